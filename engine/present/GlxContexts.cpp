#include "engine/present/GlxContexts.h"

#include <GL/glx.h>
#include <GL/glxext.h>

#include <string_view>

namespace tide {

namespace {

int attribute(Display* display, GLXFBConfig config, int name)
{
    int value = 0;
    return glXGetFBConfigAttrib(display, config, name, &value) == 0 ? value : 0;
}

// Smaller is better; negative does not fit. Buffers that nobody draws into only cost.
int badness(Display* display, GLXFBConfig config, VisualID visual)
{
    const bool fits = static_cast<VisualID>(attribute(display, config, GLX_VISUAL_ID)) == visual &&
                      (attribute(display, config, GLX_DRAWABLE_TYPE) & GLX_WINDOW_BIT) != 0 &&
                      (attribute(display, config, GLX_RENDER_TYPE) & GLX_RGBA_BIT) != 0;
    if (!fits)
        return -1;
    const int singleBuffered = attribute(display, config, GLX_DOUBLEBUFFER) == 0 ? 10000 : 0;
    return singleBuffered + 100 * attribute(display, config, GLX_SAMPLES) +
           attribute(display, config, GLX_ACCUM_RED_SIZE) + attribute(display, config, GLX_DEPTH_SIZE) +
           attribute(display, config, GLX_STENCIL_SIZE);
}

void swapWithoutWaiting(Display* display, XID drawable)
{
    static const auto setInterval = reinterpret_cast<PFNGLXSWAPINTERVALEXTPROC>(
        glXGetProcAddress(reinterpret_cast<const GLubyte*>("glXSwapIntervalEXT")));
    static const auto setIntervalMesa = reinterpret_cast<PFNGLXSWAPINTERVALMESAPROC>(
        glXGetProcAddress(reinterpret_cast<const GLubyte*>("glXSwapIntervalMESA")));
    const char* extensions = glXQueryExtensionsString(display, DefaultScreen(display));
    const std::string_view known = extensions == nullptr ? "" : extensions;
    if (known.find("GLX_EXT_swap_control") != std::string_view::npos)
        setInterval(display, drawable, 0);
    else if (known.find("GLX_MESA_swap_control") != std::string_view::npos)
        setIntervalMesa(0);
}

} // namespace

GlxSurface::~GlxSurface()
{
    glXDestroyWindow(contexts_.connection_.display(), drawable_);
}

bool GlxSurface::makeCurrent()
{
    const bool changes = contexts_.current_ != drawable_;
    if (!contexts_.makeCurrent(drawable_, contexts_.entries_.at(visual_)))
        return false;
    if (changes && !intervalSet_) {
        swapWithoutWaiting(contexts_.connection_.display(), drawable_);
        intervalSet_ = true;
    }
    return true;
}

void GlxSurface::swap()
{
    glXSwapBuffers(contexts_.connection_.display(), drawable_);
}

void* GlxSurface::context() const
{
    return contexts_.entries_.at(visual_).context;
}

GlxContexts::GlxContexts(XConnection& connection)
    : connection_(connection)
{
}

GlxContexts::~GlxContexts()
{
    glXMakeContextCurrent(connection_.display(), kNoXid, kNoXid, nullptr);
    for (auto& [visual, entry] : entries_)
        destroy(entry);
}

std::unique_ptr<GlxSurface> GlxContexts::surfaceFor(Window window, const WindowLook& look)
{
    const Entry* entry = entryFor(look);
    if (entry == nullptr)
        return nullptr;
    const GLXWindow drawable = glXCreateWindow(connection_.display(), entry->config, window, nullptr);
    if (drawable == kNoXid)
        return nullptr;
    return std::make_unique<GlxSurface>(*this, look.visual, drawable);
}

bool GlxContexts::park()
{
    if (entries_.empty())
        return false;
    const Entry& first = entries_.begin()->second;
    return makeCurrent(first.parking, first);
}

GlxContexts::Entry* GlxContexts::entryFor(const WindowLook& look)
{
    const auto found = entries_.find(look.visual);
    if (found != entries_.end())
        return &found->second;
    GLXFBConfig config = configFor(look);
    if (config == nullptr)
        return nullptr;
    const Entry made = makeEntry(config, look);
    return made.context == nullptr ? nullptr : &entries_.emplace(look.visual, made).first->second;
}

GLXFBConfig GlxContexts::configFor(const WindowLook& look) const
{
    Display* display = connection_.display();
    int major = 0;
    int minor = 0;
    if (glXQueryVersion(display, &major, &minor) == 0 || (major == 1 && minor < 3))
        return nullptr;
    int count = 0;
    const std::unique_ptr<GLXFBConfig, int (*)(void*)> all(glXGetFBConfigs(display, look.screen, &count), &XFree);
    GLXFBConfig best = nullptr;
    int least = 0;
    for (int i = 0; i < count; ++i) {
        GLXFBConfig config = all.get()[i];
        const int bad = badness(display, config, look.visual);
        if (bad < 0 || (best != nullptr && bad >= least))
            continue;
        best = config;
        least = bad;
    }
    return best;
}

GlxContexts::Entry GlxContexts::makeEntry(GLXFBConfig config, const WindowLook& look) const
{
    Display* display = connection_.display();
    GLXContext shared = entries_.empty() ? nullptr : entries_.begin()->second.context;
    Entry entry;
    entry.config = config;
    entry.context = glXCreateNewContext(display, config, GLX_RGBA_TYPE, shared, True);
    const std::unique_ptr<XVisualInfo, int (*)(void*)> visual(glXGetVisualFromFBConfig(display, config), &XFree);
    if (entry.context == nullptr || visual == nullptr)
        return entry;
    const Window root = RootWindow(display, look.screen);
    entry.colours = XCreateColormap(display, root, visual->visual, AllocNone);
    XSetWindowAttributes attributes{};
    attributes.colormap = entry.colours;
    entry.parking = XCreateWindow(display, root, 0, 0, 1, 1, 0, visual->depth, InputOutput, visual->visual,
                                  CWColormap | CWBorderPixel, &attributes);
    return entry;
}

bool GlxContexts::makeCurrent(XID drawable, const Entry& entry)
{
    if (current_ == drawable)
        return true;
    const bool done = glXMakeContextCurrent(connection_.display(), drawable, drawable, entry.context) != 0;
    current_ = done ? drawable : kNoXid; // after a failure nothing is current
    return done;
}

void GlxContexts::destroy(Entry& entry)
{
    Display* display = connection_.display();
    glXDestroyContext(display, entry.context);
    XDestroyWindow(display, entry.parking);
    XFreeColormap(display, entry.colours);
}

} // namespace tide
