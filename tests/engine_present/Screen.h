#pragma once

#include "engine/present/Presenter.h"
#include "tests/support/Engine.h"

#include <GL/glx.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#undef None
#undef Bool
#undef Status

#include <atomic>
#include <vector>

namespace tide {

using engine_test::eventually;

struct Colour
{
    int red = 0, green = 0, blue = 0;
};

inline bool isNear(const Colour& a, const Colour& b, int tolerance = 4)
{
    return std::abs(a.red - b.red) <= tolerance && std::abs(a.green - b.green) <= tolerance &&
           std::abs(a.blue - b.blue) <= tolerance;
}

// A client of the X server beside the presenter's: owns windows and looks at what is on the screen.
class Screen
{
public:
    Screen()
        : display_(XOpenDisplay(nullptr))
    {
        XSetErrorHandler(&Screen::ignore);
    }
    ~Screen() { XCloseDisplay(display_); }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    Window window(int width, int height, Window parent = 0, int x = 0, int y = 0)
    {
        const Window made =
            XCreateSimpleWindow(display_, parent ? parent : DefaultRootWindow(display_), x, y,
                                static_cast<unsigned>(width), static_cast<unsigned>(height), 0, 0, kBackground);
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        XChangeWindowAttributes(display_, made, CWOverrideRedirect, &attributes);
        map(made);
        return made;
    }

    void map(Window window) { XMapRaised(display_, window), XSync(display_, False); }
    void unmap(Window window) { XUnmapWindow(display_, window), XSync(display_, False); }
    void destroy(Window window) { XDestroyWindow(display_, window), XSync(display_, False); }
    void clear(Window window) { XClearArea(display_, window, 0, 0, 0, 0, True), XSync(display_, False); }
    void resize(Window window, int width, int height)
    {
        XResizeWindow(display_, window, static_cast<unsigned>(width), static_cast<unsigned>(height));
        XSync(display_, False);
    }

    // A place outside the window reads as white.
    Colour at(Window window, int x, int y)
    {
        const auto pixels = read(window, x, y, 1, 1);
        return pixels.empty() ? Colour{255, 255, 255} : pixels.front();
    }

    // Row by row; nothing where a part lies outside the screen.
    std::vector<Colour> read(Window window, int x, int y, int width, int height)
    {
        std::vector<Colour> pixels;
        XImage* image = XGetImage(display_, window, x, y, static_cast<unsigned>(width), static_cast<unsigned>(height),
                                  AllPlanes, ZPixmap);
        for (int i = 0; image != nullptr && i < width * height; ++i) {
            const unsigned long pixel = XGetPixel(image, i % width, i / width);
            pixels.push_back({static_cast<int>(pixel >> 16 & 255), static_cast<int>(pixel >> 8 & 255),
                              static_cast<int>(pixel & 255)});
        }
        if (image != nullptr)
            XDestroyImage(image);
        return pixels;
    }

    bool shows(Window window, int x, int y, Colour expected)
    {
        return eventually([&] { return isNear(at(window, x, y), expected); });
    }

    static constexpr unsigned long kBackground = 0x204060;
    static constexpr Colour kBackgroundColour{0x20, 0x40, 0x60};

private:
    static int ignore(Display*, XErrorEvent*) { return 0; }
    Display* const display_;
};

} // namespace tide
