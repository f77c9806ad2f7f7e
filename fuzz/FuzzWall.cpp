#include <QApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

// Once, before the first wall.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static const QTemporaryDir root; // of all files that the library writes
    qputenv("PWD", root.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules("*.debug=false\n*.info=false\n*.warning=false");
    static QApplication application(*argc, *argv);
    static QTimer nobody; // who closes every dialog
    QObject::connect(&nobody, &QTimer::timeout, [] {
        if (QWidget* const dialog = QApplication::activeModalWidget())
            dialog->close();
    });
    nobody.start(1);
    return 0;
}
