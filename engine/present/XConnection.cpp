#include "engine/present/XConnection.h"

#include <mutex>
#include <set>
#include <utility>

namespace tide {

namespace {

// Which connections are ours, and who handled errors before us.
class ErrorGuard
{
public:
    static ErrorGuard& instance()
    {
        static ErrorGuard guard;
        return guard;
    }

    void enter(Display* display)
    {
        const std::lock_guard lock(mutex_);
        own_.insert(display);
        install();
    }

    void leave(Display* display)
    {
        const std::lock_guard lock(mutex_);
        own_.erase(display);
        if (own_.empty())
            uninstall();
    }

    void reinstall()
    {
        const std::lock_guard lock(mutex_);
        if (!own_.empty())
            install();
    }

private:
    void install()
    {
        const XErrorHandler before = XSetErrorHandler(&ErrorGuard::onError);
        if (before == &ErrorGuard::onError)
            return;
        if (first_ == nullptr)
            first_ = before;
        chained_ = before;
    }

    void uninstall()
    {
        const XErrorHandler present = XSetErrorHandler(chained_);
        if (present != &ErrorGuard::onError)
            XSetErrorHandler(present);
        first_ = chained_ = nullptr;
    }

    XErrorHandler foreignHandler(Display* display, bool nested)
    {
        const std::lock_guard lock(mutex_);
        if (own_.count(display) > 0)
            return nullptr;
        return nested ? first_ : chained_;
    }

    static int onError(Display* display, XErrorEvent* event)
    {
        // A handler that was set over ours may chain back to us: then the one from before both has the word.
        thread_local bool inside = false;
        const XErrorHandler handler = instance().foreignHandler(display, inside);
        if (handler == nullptr)
            return 0;
        const bool nested = std::exchange(inside, true);
        const int answer = handler(display, event);
        inside = nested;
        return answer;
    }

    std::mutex mutex_;
    std::set<Display*> own_;
    XErrorHandler first_ = nullptr;
    XErrorHandler chained_ = nullptr;
};

constexpr long kEvents = StructureNotifyMask | ExposureMask | VisibilityChangeMask;

} // namespace

std::unique_ptr<XConnection> XConnection::open()
{
    XInitThreads();
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr)
        return nullptr;
    return std::unique_ptr<XConnection>(new XConnection(display));
}

XConnection::XConnection(Display* display)
    : display_(display)
{
    ErrorGuard::instance().enter(display);
}

XConnection::~XConnection()
{
    XCloseDisplay(display_);
    ErrorGuard::instance().leave(display_);
}

void XConnection::guardErrors()
{
    ErrorGuard::instance().reinstall();
}

std::optional<WindowLook> XConnection::look(Window window) const
{
    XWindowAttributes attributes{};
    if (window == kNoXid || XGetWindowAttributes(display_, window, &attributes) == 0)
        return std::nullopt;
    WindowLook look;
    look.width = attributes.width;
    look.height = attributes.height;
    look.viewable = attributes.map_state == IsViewable;
    look.visual = XVisualIDFromVisual(attributes.visual);
    look.screen = XScreenNumberOfScreen(attributes.screen);
    return look;
}

std::vector<Window> XConnection::ancestors(Window window) const
{
    std::vector<Window> chain;
    Window root = kNoXid;
    Window parent = kNoXid;
    Window* children = nullptr;
    unsigned count = 0;
    while (XQueryTree(display_, window, &root, &parent, &children, &count) != 0) {
        if (children != nullptr)
            XFree(children);
        if (parent == root || parent == kNoXid)
            break;
        chain.push_back(parent);
        window = parent;
    }
    return chain;
}

void XConnection::watch(Window window)
{
    if (++watched_[window] == 1)
        XSelectInput(display_, window, kEvents);
}

void XConnection::unwatch(Window window)
{
    const auto found = watched_.find(window);
    if (found == watched_.end() || --found->second > 0)
        return;
    watched_.erase(found);
    XSelectInput(display_, window, NoEventMask);
}

} // namespace tide
