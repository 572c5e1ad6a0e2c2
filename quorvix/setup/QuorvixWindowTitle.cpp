#include <quorvix/setup/QuorvixWindowTitle.h>

#include <utility>

namespace VX
{

std::string QuorvixWindowTitle::compose()
{
    std::string title = ViewerTitle::compose();
    if (email_.empty())
        return title;
    if (!title.empty())
        title += ' ';
    return title + email_;
}

void QuorvixWindowTitle::setEmail(std::string email)
{
    if (email == email_)
        return;
    email_ = std::move(email);
    update_();
}

} // namespace VX
