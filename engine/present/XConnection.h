#pragma once

#include <X11/Xlib.h>
// Xlib's macro breaks the names of others.
#undef None

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace tide {

constexpr XID kNoXid = 0;

struct WindowLook
{
    int width = 0;
    int height = 0;
    bool viewable = false; // mapped, and so are all its ancestors
    VisualID visual = 0;
    int screen = 0;
};

// The engine's own connection to the X server. While one is open, errors of it are swallowed (a window may die while it
// is drawn) and those of every other connection go to the handler that was there before. Render thread only.
class XConnection
{
public:
    static std::unique_ptr<XConnection> open();
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    Display* display() const { return display_; }
    int descriptor() const { return ConnectionNumber(display_); }

    // A host may have put its own error handler over ours since.
    static void guardErrors();

    // Null when the window does not exist.
    std::optional<WindowLook> look(Window window) const;
    std::vector<Window> ancestors(Window window) const; // without the root

    // Counted: events of a window come from the first watch to the last unwatch.
    void watch(Window window);
    void unwatch(Window window);

private:
    explicit XConnection(Display* display);
    Display* const display_;
    std::map<Window, int> watched_;
};

} // namespace tide
