// The wall of wall_bench on GStreamer: one pipeline a window, drawn with OpenGL, one thread a decoder, no sound.
//
//     gstreamer_wall --windows 16 --fps 25 --width 704 --height 576 --seconds 20

#include "bench/peers/PeerWall.h"

#include <gst/gst.h>
#include <gst/video/videooverlay.h>

#include <cstdlib>

namespace {

class Cell
{
public:
    Cell(QWidget& wall, const QRect& place)
        : window_(&wall)
    {
        window_.setAttribute(Qt::WA_NativeWindow);
        window_.setGeometry(place);
        window_.show();
    }

    ~Cell()
    {
        if (pipeline_ == nullptr)
            return;
        gst_element_set_state(pipeline_, GST_STATE_NULL);
        gst_object_unref(sink_);
        gst_object_unref(pipeline_);
    }

    Cell(const Cell&) = delete;
    Cell& operator=(const Cell&) = delete;

    void play(const QString& clip)
    {
        const QString chain = "filesrc location=\"%1\" ! qtdemux ! h264parse ! avdec_h264 max-threads=1 ! "
                              "videoscale ! videoconvert ! ximagesink name=sink";
        GError* error = nullptr;
        pipeline_ = gst_parse_launch(chain.arg(clip).toUtf8().constData(), &error);
        if (error != nullptr) {
            qCritical("%s", error->message);
            std::exit(1);
        }
        sink_ = gst_bin_get_by_name(GST_BIN(pipeline_), "sink");
        gst_video_overlay_set_window_handle(GST_VIDEO_OVERLAY(sink_), static_cast<guintptr>(window_.winId()));
        gst_element_set_state(pipeline_, GST_STATE_PLAYING);
    }

    // Pictures that reached the sink in time.
    std::uint64_t shown() const
    {
        GstStructure* stats = nullptr;
        g_object_get(sink_, "stats", &stats, nullptr);
        guint64 rendered = 0;
        gst_structure_get_uint64(stats, "rendered", &rendered);
        gst_structure_free(stats);
        return rendered;
    }

private:
    QWidget window_;
    GstElement* pipeline_ = nullptr;
    GstElement* sink_ = nullptr;
};

} // namespace

int main(int argc, char** argv)
{
    gst_init(&argc, &argv);
    return bench::printPeerWall<Cell>(argc, argv);
}
