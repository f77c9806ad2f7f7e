#include <gst/app/gstappsrc.h>
#include <gst/gst.h>
#include <gst/rtsp-server/rtsp-server.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <sys/prctl.h>
#include <vector>

// A camera for demonstrations: it serves a file of bare H.264 over and over as a live RTSP stream, on loopback only,
// and ends with the process that started it.
namespace {

struct Unref
{
    void operator()(gpointer object) const { gst_object_unref(object); }
};

// The file's pictures: what stands between two access unit delimiters.
std::vector<std::string> readPictures(const char* path)
{
    static const std::string delimiter("\0\0\0\1\x09", 5);
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    std::vector<std::string> pictures;
    for (size_t from = bytes.find(delimiter); from != std::string::npos;) {
        const size_t next = bytes.find(delimiter, from + delimiter.size());
        pictures.push_back(bytes.substr(from, next - from));
        from = next;
    }
    return pictures;
}

// What the camera sees. One reel serves all streams, each with a place of its own in it.
struct Reel
{
    std::vector<std::string> pictures;
    guint64 rate = 25;
};

struct Lens
{
    const Reel* reel;
    guint64 shown;
};

void onNeedData(GstAppSrc* source, guint, gpointer user)
{
    Lens& lens = *static_cast<Lens*>(user);
    const std::string& picture = lens.reel->pictures[lens.shown % lens.reel->pictures.size()];
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, picture.size(), nullptr);
    gst_buffer_fill(buffer, 0, picture.data(), picture.size());
    GST_BUFFER_DURATION(buffer) = GST_SECOND / lens.reel->rate;
    GST_BUFFER_PTS(buffer) = GST_BUFFER_DTS(buffer) = lens.shown++ * GST_SECOND / lens.reel->rate;
    gst_app_src_push_buffer(source, buffer); // takes the buffer
}

void onMediaConfigure(GstRTSPMediaFactory*, GstRTSPMedia* media, gpointer reel)
{
    const std::unique_ptr<GstElement, Unref> bin(gst_rtsp_media_get_element(media));
    const std::unique_ptr<GstElement, Unref> source(gst_bin_get_by_name_recurse_up(GST_BIN(bin.get()), "reel"));
    auto lens = std::make_unique<Lens>(Lens{static_cast<const Reel*>(reel), 0});
    g_signal_connect_data(
        source.get(), "need-data", G_CALLBACK(&onNeedData), lens.release(),
        [](gpointer owned, GClosure*) { delete static_cast<Lens*>(owned); }, GConnectFlags(0));
}

void serve(GstRTSPServer* server, Reel& reel)
{
    GstRTSPMediaFactory* factory = gst_rtsp_media_factory_new(); // the mounts take it
    gst_rtsp_media_factory_set_launch(factory, "( appsrc name=reel is-live=true format=time "
                                               "caps=video/x-h264,stream-format=byte-stream,alignment=au "
                                               "! h264parse ! rtph264pay config-interval=-1 name=pay0 pt=96 )");
    gst_rtsp_media_factory_set_shared(factory, TRUE);
    g_signal_connect(factory, "media-configure", G_CALLBACK(&onMediaConfigure), &reel);
    GstRTSPMountPoints* mounts = gst_rtsp_server_get_mount_points(server);
    gst_rtsp_mount_points_add_factory(mounts, "/live", factory);
    g_object_unref(mounts);
}

} // namespace

int main(int argc, char** argv)
{
    Reel reel;
    if (argc == 3)
        reel = {readPictures(argv[1]), std::strtoull(argv[2], nullptr, 10)};
    if (reel.pictures.empty() || reel.rate == 0) {
        std::cerr << "usage: lumen-camera FILE.h264 PICTURES_A_SECOND    (with access unit delimiters)\n";
        return 2;
    }
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    gst_init(nullptr, nullptr);
    const std::unique_ptr<GstRTSPServer, Unref> server(gst_rtsp_server_new());
    gst_rtsp_server_set_address(server.get(), "127.0.0.1");
    gst_rtsp_server_set_service(server.get(), "0");
    serve(server.get(), reel);
    if (gst_rtsp_server_attach(server.get(), nullptr) == 0) {
        std::cerr << "lumen-camera: no port can be opened\n";
        return 1;
    }
    std::cout << "rtsp://127.0.0.1:" << gst_rtsp_server_get_bound_port(server.get()) << "/live" << std::endl;
    const std::unique_ptr<GMainLoop, void (*)(GMainLoop*)> loop(g_main_loop_new(nullptr, FALSE), &g_main_loop_unref);
    g_main_loop_run(loop.get());
    return 0;
}
