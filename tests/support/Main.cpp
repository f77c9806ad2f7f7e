#include <QApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <gtest/gtest.h>

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
