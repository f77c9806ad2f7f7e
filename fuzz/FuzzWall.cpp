#include "tests/support/Functions.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

// Once, before the first wall.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static const QTemporaryDir root; // of all files that the library writes
    qputenv("PWD", root.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules("*.debug=false\n*.info=false\n*.warning=false");
    static QApplication application(*argc, *argv);
    static const functions::Nobody nobody;
    return 0;
}
