// An RTSP server on loopback for tests: rtsp_test_server PORT SECONDS [file=PATH] [auth=USER:PASSWORD] [silent=SECONDS]
// It serves /live, a moving ball, and, of a file, /file, which can be sought in; prints "ready" when it can be
// connected to; and ends after SECONDS or with its parent. `silent` makes the ball stop coming after so long, with the
// connection left open.
#include <gst/rtsp-server/rtsp-server.h>

#include <cstdio>
#include <map>
#include <string>
#include <sys/prctl.h>

namespace {

using Settings = std::map<std::string, std::string>;

Settings parse(int count, char** words)
{
    Settings settings;
    for (int i = 3; i < count; ++i) {
        const std::string word = words[i];
        const auto equals = word.find('=');
        settings[word.substr(0, equals)] = word.substr(equals + 1);
    }
    return settings;
}

void addMedia(GstRTSPServer* server, const char* path, const std::string& launch, bool shared, bool locked)
{
    GstRTSPMediaFactory* factory = gst_rtsp_media_factory_new();
    gst_rtsp_media_factory_set_launch(factory, launch.c_str());
    gst_rtsp_media_factory_set_shared(factory, shared);
    if (locked)
        gst_rtsp_media_factory_add_role(factory, "user", GST_RTSP_PERM_MEDIA_FACTORY_ACCESS, G_TYPE_BOOLEAN, TRUE,
                                        GST_RTSP_PERM_MEDIA_FACTORY_CONSTRUCT, G_TYPE_BOOLEAN, TRUE, nullptr);
    GstRTSPMountPoints* mounts = gst_rtsp_server_get_mount_points(server);
    gst_rtsp_mount_points_add_factory(mounts, path, factory);
    g_object_unref(mounts);
}

void lock(GstRTSPServer* server, const std::string& auth)
{
    const auto colon = auth.find(':');
    GstRTSPAuth* guard = gst_rtsp_auth_new();
    GstRTSPToken* token = gst_rtsp_token_new(GST_RTSP_TOKEN_MEDIA_FACTORY_ROLE, G_TYPE_STRING, "user", nullptr);
    gst_rtsp_auth_set_supported_methods(guard, GST_RTSP_AUTH_DIGEST);
    gst_rtsp_auth_add_digest(guard, auth.substr(0, colon).c_str(), auth.substr(colon + 1).c_str(), token);
    gst_rtsp_token_unref(token);
    gst_rtsp_server_set_auth(server, guard);
    g_object_unref(guard);
}

std::string liveLaunch(const Settings& settings)
{
    const std::string pictures =
        settings.count("silent") ? "num-buffers=" + std::to_string(std::stoi(settings.at("silent")) * 25) : "";
    return "( videotestsrc is-live=true pattern=ball " + pictures +
           " ! video/x-raw,width=320,height=240,framerate=25/1 ! openh264enc gop-size=25 ! h264parse "
           "! rtph264pay name=pay0 pt=96 config-interval=-1 "
           "audiotestsrc is-live=true freq=440 ! audio/x-raw,rate=8000,channels=1 ! alawenc ! rtppcmapay name=pay1 "
           "pt=8 )";
}

gboolean quit(gpointer loop)
{
    g_main_loop_quit(static_cast<GMainLoop*>(loop));
    return G_SOURCE_REMOVE;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    gst_init(nullptr, nullptr);
    const Settings settings = parse(argc, argv);
    GstRTSPServer* server = gst_rtsp_server_new();
    gst_rtsp_server_set_address(server, "127.0.0.1");
    gst_rtsp_server_set_service(server, argv[1]);
    const bool locked = settings.count("auth") > 0;
    if (locked)
        lock(server, settings.at("auth"));
    addMedia(server, "/live", liveLaunch(settings), true, locked);
    if (settings.count("file"))
        addMedia(server, "/file",
                 "( filesrc location=" + settings.at("file") + " ! qtdemux ! h264parse ! rtph264pay name=pay0 pt=96 )",
                 false, locked);
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    if (gst_rtsp_server_attach(server, nullptr) == 0)
        return 1;
    g_timeout_add_seconds(static_cast<guint>(std::stoi(argv[2])), quit, loop);
    std::puts("ready");
    std::fflush(stdout);
    g_main_loop_run(loop);
    return 0;
}
