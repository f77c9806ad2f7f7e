#include "include/lumen_deck/lumen_deck.h"
#include "src/auxiliary.h"
#include "tests/local/Dialogs.h"
#include "tests/local/LocalFiles.h"

#include <thread>

namespace local_test {

using DialogTest = RootFolder;

TEST_F(DialogTest, saveNamesAreCompletedAndACancelledOneIsASlash)
{
    struct Case
    {
        const char* filter;
        const char* typed; // null: cancelled
        QString expected;
    };
    const Case cases[] = {
        {"Excel (*.xls)", "report", root() + "/report.xls"},
        {"Excel (*.xls)", "report.xls", root() + "/report.xls"},
        {"Excel (*.xls);;TXT (*.txt)", nullptr, "/"},
        {"TXT (*.txt)", "report", root() + "/report"},
        {"*", nullptr, "/"},
        {"", "report", root() + "/report"},
        {"", nullptr, ""},
    };
    for (const Case& c : cases) {
        DialogUser user([&](QFileDialog& dialog) {
            EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
            c.typed ? choose(dialog, root() + "/" + c.typed) : dialog.reject();
        });
        QString selectedFilter;
        EXPECT_EQ(auxiliary().getAllTypeFileName(1, root(), c.filter, selectedFilter), c.expected) << c.filter;
    }
}

TEST_F(DialogTest, browserAsksForFoldersOrFiles)
{
    writeBytes(root() + "/a.pdf", "x");
    QDir(root()).mkdir("folder");
    DialogUser forFolder([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.fileMode(), QFileDialog::Directory);
        EXPECT_TRUE(dialog.testOption(QFileDialog::ShowDirsOnly));
        EXPECT_EQ(dialog.directory().absolutePath(), root());
        EXPECT_EQ(dialog.windowModality(), Qt::ApplicationModal);
        EXPECT_TRUE(dialog.windowFlags() & Qt::WindowStaysOnTopHint);
        choose(dialog, root() + "/folder");
    });
    const QJsonDocument folderRequest = json(R"({"mode":0,"fileType":"xls"})");
    EXPECT_EQ(objectOf(LD_OpenFileBrowser(&folderRequest)),
              (QJsonObject{{"filepath", root() + "/folder"}, {"errorCode", 0}, {"errorModule", ""}}));

    const std::pair<const char*, QStringList> filters[] = {
        {R"({"mode":1,"fileType":"xls"})", {"Excel (*.xls)"}},
        {R"({"mode":1,"fileType":"txt"})", {"TXT (*.txt)"}},
        {R"({"mode":1,"fileType":"*"})", {"*"}},
        {R"({"mode":2,"fileType":"pdf"})", {"*.pdf"}},
        {R"({"mode":1})", {"All Files (*)"}},
    };
    for (const auto& [text, filter] : filters) {
        DialogUser forFile([&, expected = filter](QFileDialog& dialog) {
            EXPECT_EQ(dialog.nameFilters(), expected);
            EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
            dialog.reject();
        });
        const QJsonDocument request = json(text);
        EXPECT_EQ(objectOf(LD_OpenFileBrowser(&request)),
                  (QJsonObject{{"filepath", ""}, {"errorCode", 0}, {"errorModule", ""}}));
    }
    DialogUser picks([&](QFileDialog& dialog) { choose(dialog, root() + "/a.pdf"); });
    const QJsonDocument request = json(R"({"mode":1,"fileType":"pdf"})");
    EXPECT_EQ(objectOf(LD_OpenFileBrowser(&request))["filepath"], root() + "/a.pdf");
}

// No lock is held over the dialog's event loop.
TEST_F(DialogTest, otherThreadsGoOnWhileADialogIsOpen)
{
    DialogUser user([&](QFileDialog& dialog) {
        std::thread([] {
            EXPECT_EQ(objectOf(LD_GetLocalConfig(nullptr))["errorCode"], 0);
            const QJsonDocument change = json(R"({"localConfig":{"a":"b"}})");
            EXPECT_EQ(LD_SetLocalConfig(&change), nullptr);
            const QJsonDocument original = json(R"({"encrypted":1,"key":"k"})");
            EXPECT_EQ(LD_SetOriginalString(&original), nullptr);
            EXPECT_EQ(LD_StopAsynUpload(nullptr), nullptr);
            EXPECT_EQ(objectOf(LD_OpenFileBrowser(nullptr))["filepath"], ""); // here nothing may be shown
        }).join();
        dialog.reject();
    });
    EXPECT_EQ(objectOf(LD_OpenFileBrowser(nullptr))["errorCode"], 0);
}

TEST_F(DialogTest, foldersAreShownByTheDesktop)
{
    Desktop desktop;
    const QJsonDocument windows = json(R"({"dir":"C:\\Video Files\\a#b"})");
    const QJsonDocument empty = json(R"({"dir":""})");
    EXPECT_EQ(LD_OpenDirectory(&windows), nullptr);
    EXPECT_EQ(LD_OpenDirectory(&empty), nullptr);
    EXPECT_EQ(LD_OpenDirectory(nullptr), nullptr);
    EXPECT_EQ(desktop.opened, QStringList({"file:///C:/Video Files/a%23b", "file://" + root(), "file://" + root()}));
}

} // namespace local_test
