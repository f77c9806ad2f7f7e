// The wall of wall_bench on libmpv's render API, in its cheapest shape: native windows, one GL context for all of them,
// nothing waits for the screen, one thread a decoder, no sound, no OSD, plain scaling.
//
//     mpv_wall --windows 16 --fps 25 --width 704 --height 576 --seconds 20

#include "bench/peers/PeerWall.h"

#include <QOpenGLContext>
#include <QWindow>

#include <mpv/client.h>
#include <mpv/render_gl.h>

#include <clocale>
#include <cstdlib>
#include <utility>

namespace {

constexpr std::pair<const char*, const char*> kOptions[] = {
    {"vo", "libmpv"},
    {"config", "no"},
    {"aid", "no"},
    {"sid", "no"},
    {"osd-level", "0"},
    {"hwdec", "no"},
    {"loop-file", "inf"},
    {"osc", "no"},
    {"scale", "bilinear"},
    {"dscale", "bilinear"},
    {"cscale", "bilinear"},
    {"dither-depth", "no"},
    {"correct-downscaling", "no"},
    {"vd-lavc-threads", "1"},
    {"video-timing-offset", "0"},
    {"input-default-bindings", "no"},
};

void mustSucceed(const char* what, int status)
{
    if (status >= 0)
        return;
    qCritical("%s: %s", what, mpv_error_string(status));
    std::exit(1);
}

void* glFunction(void* context, const char* name)
{
    return reinterpret_cast<void*>(static_cast<QOpenGLContext*>(context)->getProcAddress(name));
}

// One for all windows: switching surfaces costs less than switching contexts.
std::shared_ptr<QOpenGLContext> sharedContext()
{
    static std::weak_ptr<QOpenGLContext> present;
    std::shared_ptr<QOpenGLContext> context = present.lock();
    if (!context) {
        QSurfaceFormat format;
        format.setSwapInterval(0);
        context = std::make_shared<QOpenGLContext>();
        context->setFormat(format);
        context->create();
        present = context;
    }
    return context;
}

class Cell
{
public:
    Cell(QWidget& wall, const QRect& place)
    {
        wall.winId(); // makes it native
        window_.setParent(wall.windowHandle());
        window_.setSurfaceType(QSurface::OpenGLSurface);
        window_.setFormat(context_->format());
        window_.setGeometry(place);
        window_.show();
        for (const auto& [name, value] : kOptions)
            mpv_set_option_string(mpv_, name, value); // a version without one of them goes on without it
        mustSucceed("mpv_initialize", mpv_initialize(mpv_));
        createRenderer();
    }

    ~Cell()
    {
        mpv_render_context_set_update_callback(renderer_, nullptr, nullptr);
        context_->makeCurrent(&window_);
        mpv_render_context_free(renderer_);
        mpv_terminate_destroy(mpv_);
    }

    Cell(const Cell&) = delete;
    Cell& operator=(const Cell&) = delete;

    void play(const QString& clip)
    {
        const QByteArray path = clip.toLocal8Bit();
        const char* command[] = {"loadfile", path.constData(), nullptr};
        mustSucceed("loadfile", mpv_command(mpv_, command));
    }

    std::uint64_t shown() const { return shown_; }

private:
    void createRenderer()
    {
        context_->makeCurrent(&window_);
        mpv_opengl_init_params gl{};
        gl.get_proc_address = glFunction;
        gl.get_proc_address_ctx = context_.get();
        mpv_render_param parameters[] = {
            {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_OPENGL)},
            {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &gl},
            {MPV_RENDER_PARAM_INVALID, nullptr},
        };
        mustSucceed("mpv_render_context_create", mpv_render_context_create(&renderer_, mpv_, parameters));
        mpv_render_context_set_update_callback(
            renderer_,
            [](void* cell) {
                QMetaObject::invokeMethod(
                    &static_cast<Cell*>(cell)->window_, [cell] { static_cast<Cell*>(cell)->update(); },
                    Qt::QueuedConnection);
            },
            this);
    }

    void update()
    {
        if ((mpv_render_context_update(renderer_) & MPV_RENDER_UPDATE_FRAME) == 0 || !window_.isExposed())
            return;
        mpv_render_frame_info next{};
        mpv_render_param asked = {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &next};
        mpv_render_context_get_info(renderer_, asked);
        render();
        const auto repeated = MPV_RENDER_FRAME_INFO_REDRAW | MPV_RENDER_FRAME_INFO_REPEAT;
        shown_ += (next.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0 && (next.flags & repeated) == 0 ? 1 : 0;
    }

    void render()
    {
        context_->makeCurrent(&window_);
        mpv_opengl_fbo target{0, window_.width(), window_.height(), 0};
        int yes = 1;
        int no = 0;
        mpv_render_param parameters[] = {
            {MPV_RENDER_PARAM_OPENGL_FBO, &target},
            {MPV_RENDER_PARAM_FLIP_Y, &yes},
            {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no},
            {MPV_RENDER_PARAM_INVALID, nullptr},
        };
        mpv_render_context_render(renderer_, parameters);
        context_->swapBuffers(&window_);
        mpv_render_context_report_swap(renderer_);
    }

    std::shared_ptr<QOpenGLContext> context_ = sharedContext();
    QWindow window_;
    mpv_handle* mpv_ = mpv_create();
    mpv_render_context* renderer_ = nullptr;
    std::uint64_t shown_ = 0;
};

} // namespace

int main(int argc, char** argv)
{
    return bench::printPeerWall<Cell>(argc, argv, [] { std::setlocale(LC_NUMERIC, "C"); }); // mpv asks for it
}
