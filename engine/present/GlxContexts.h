#pragma once

#include "engine/present/XConnection.h"

#include <map>
#include <memory>

struct __GLXcontextRec;
struct __GLXFBConfigRec;

namespace tide {

class GlxContexts;

// What OpenGL draws into a window through. A GLX window of its own keeps the back buffer alive from frame to frame; the
// plain X window would lose it at every change of the current window.
class GlxSurface
{
public:
    GlxSurface(GlxContexts& contexts, VisualID visual, XID drawable)
        : contexts_(contexts)
        , visual_(visual)
        , drawable_(drawable)
    {
    }
    ~GlxSurface(); // never while current: see GlxContexts::park
    GlxSurface(const GlxSurface&) = delete;
    GlxSurface& operator=(const GlxSurface&) = delete;

    bool makeCurrent();
    void swap();
    void* context() const;

private:
    GlxContexts& contexts_;
    const VisualID visual_;
    const XID drawable_;
    bool intervalSet_ = false;
};

// One compatibility context for all windows of a visual; contexts of differing visuals share their objects.
// Render thread only.
class GlxContexts
{
public:
    explicit GlxContexts(XConnection& connection);
    ~GlxContexts();
    GlxContexts(const GlxContexts&) = delete;
    GlxContexts& operator=(const GlxContexts&) = delete;

    // Null when the window's visual can not be drawn with OpenGL.
    std::unique_ptr<GlxSurface> surfaceFor(Window window, const WindowLook& look);

    // Makes a context current that belongs to no window of the host, so that GL objects and surfaces can be let go.
    // False when there is no context.
    bool park();

private:
    friend class GlxSurface;
    struct Entry
    {
        __GLXFBConfigRec* config = nullptr;
        __GLXcontextRec* context = nullptr;
        Colormap colours = kNoXid;
        Window parking = kNoXid; // never mapped
    };

    Entry* entryFor(const WindowLook& look);
    __GLXFBConfigRec* configFor(const WindowLook& look) const;
    Entry makeEntry(__GLXFBConfigRec* config, const WindowLook& look) const;
    bool makeCurrent(XID drawable, const Entry& entry);
    void destroy(Entry& entry);

    XConnection& connection_;
    std::map<VisualID, Entry> entries_;
    XID current_ = kNoXid;
};

} // namespace tide
