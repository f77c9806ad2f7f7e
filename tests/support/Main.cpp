#include <QApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
// The leak checker takes what the globals of an unloaded OpenGL driver held for lost, and cannot name the driver for a
// suppression: nothing is unloaded while it watches.
extern "C" __attribute__((visibility("default"))) int dlclose(void*)
{
    return 0;
}
#endif

// Every test program runs in a folder of its own: PWD is the root of all files that the library writes.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QTemporaryDir root;
    qputenv("PWD", root.path().toLocal8Bit());
    QLoggingCategory::setFilterRules("default.debug=false"); // a line for every call
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
