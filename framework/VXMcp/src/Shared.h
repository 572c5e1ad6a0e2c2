#pragma once

#include "Activity.h"
#include "Listeners.h"
#include "Questions.h"
#include "Registry.h"
#include "RunningCalls.h"
#include "Secrets.h"
#include "Session.h"

namespace VX::Mcp
{

/// What all requests of a server share; tools that answer late keep it alive.
struct Shared
{
    Registry registry;
    Sessions sessions;
    RunningCalls calls;
    Questions questions;
    Listeners listeners;
    Activity activity;
    StateSeal seal;
};

} // namespace VX::Mcp
