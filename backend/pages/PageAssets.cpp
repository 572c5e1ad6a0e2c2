#include "PageAssets.h"

namespace VX
{

std::string_view pageStyle()
{
    return R"css(:root {
    color-scheme: light dark;
    --back: #f3f4f6;
    --card: #ffffff;
    --text: #1b1f24;
    --faint: #57606a;
    --line: #8c959f;
    --accent: #0b5cad;
    --on-accent: #ffffff;
    --error: #b3261e;
    --kept: #1a7f37;
}
@media (prefers-color-scheme: dark) {
    :root {
        --back: #16181c;
        --card: #22252b;
        --text: #e8eaed;
        --faint: #a9b1bb;
        --line: #6e7681;
        --accent: #6cb2ff;
        --on-accent: #0b1016;
        --error: #ff9d94;
        --kept: #6fdd8b;
    }
}
* { box-sizing: border-box; }
body {
    margin: 0;
    padding: 2rem 1rem;
    background: var(--back);
    color: var(--text);
    font: 1rem/1.5 system-ui, sans-serif;
}
main {
    max-width: 26rem;
    margin: 0 auto;
    padding: 1.5rem 2rem 2rem;
    background: var(--card);
    border-radius: 0.5rem;
}
main > :last-child { margin-bottom: 0; }
p { overflow-wrap: anywhere; }
h1 { margin: 0 0 1rem; font-size: 1.5rem; line-height: 1.25; }
label { display: block; margin: 1rem 0 0.25rem; font-weight: 600; }
input {
    width: 100%;
    padding: 0.5rem 0.6rem;
    font: inherit;
    color: inherit;
    background: transparent;
    border: 1px solid var(--line);
    border-radius: 0.25rem;
}
button, .button {
    display: block;
    width: 100%;
    margin: 1.5rem 0 0;
    padding: 0.6rem;
    font: inherit;
    font-weight: 600;
    text-align: center;
    text-decoration: none;
    color: var(--on-accent);
    background: var(--accent);
    border: 0;
    border-radius: 0.25rem;
    cursor: pointer;
}
button.plain { margin-top: 0.75rem; color: var(--accent); background: transparent; }
button:hover, .button:hover { filter: brightness(1.12); }
button.plain:hover { text-decoration: underline; }
a { color: var(--accent); }
a.button { color: var(--on-accent); }
:focus-visible { outline: 3px solid var(--accent); outline-offset: 2px; }
.brand { margin: 0 0 0.25rem; color: var(--faint); font-weight: 600; letter-spacing: 0.04em; }
.error, .notice { padding: 0.5rem 0.75rem; border-left: 0.25rem solid; border-radius: 0.25rem; background: var(--back); }
.error { color: var(--error); font-weight: 600; border-color: var(--error); }
.notice { border-color: var(--kept); }
.faint { color: var(--faint); }
.rules { margin: 0.5rem 0 0; padding: 0; list-style: none; color: var(--faint); }
.rules li::before { content: "\25CB\00A0"; }
.rules li.kept { color: var(--kept); }
.rules li.kept::before { content: "\2713\00A0"; }
.hidden-text { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); white-space: nowrap; }
)css";
}

std::string_view pageScript()
{
    return R"js("use strict";

// Shows which of the password's rules are kept as one types.
for (const list of document.querySelectorAll(".rules")) {
    const input = document.getElementById(list.dataset.for);
    const show = () => {
        for (const rule of list.children) {
            const kept = new RegExp(rule.dataset.rule).test(input.value);
            rule.classList.toggle("kept", kept);
            rule.querySelector(".hidden-text").textContent = kept ? " (done)" : " (missing)";
        }
    };
    input.addEventListener("input", show);
    show();
}

// Hands the sign-in over at once; the button remains for browsers that ask first.
const open = document.getElementById("open");
if (open) {
    location.href = open.href;
}
)js";
}

} // namespace VX
