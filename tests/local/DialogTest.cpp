#include "include/lumen_deck/lumen_deck.h"
#include "src/auxiliary.h"
#include "tests/local/LocalFiles.h"

#include <thread>

namespace local_test {

using DialogTest = RootFolder;

TEST_F(DialogTest, saveNamesAreCompletedAndACancelledOneIsASlash)
{
    // The filter, what is typed, or null when the dialog is cancelled, and what comes of it.
    const std::tuple<const char*, const char*, QString> cases[] = {
        {"Excel (*.xls)", "report", root() + "/report.xls"},
        {"Excel (*.xls)", "report.xls", root() + "/report.xls"},
        {"Excel (*.xls);;TXT (*.txt)", nullptr, "/"},
        {"TXT (*.txt)", "report", root() + "/report"},
        {"*", nullptr, "/"},
        {"", "report", root() + "/report"},
        {"", nullptr, ""},
    };
    for (const auto& [filter, typed, expected] : cases) {
        DialogUser user([&, &name = typed](QFileDialog& dialog) {
            EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
            name ? choose(dialog, root() + "/" + name) : dialog.reject();
        });
        QString selectedFilter;
        EXPECT_EQ(auxiliary().getAllTypeFileName(1, root(), filter, selectedFilter), expected) << filter;
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
        choose(dialog, root() + "/folder");
    });
    EXPECT_EQ(call(LD_OpenFileBrowser, R"({"mode":0,"fileType":"xls"})"),
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
        EXPECT_EQ(call(LD_OpenFileBrowser, text),
                  (QJsonObject{{"filepath", ""}, {"errorCode", 0}, {"errorModule", ""}}));
    }
    DialogUser picks([&](QFileDialog& dialog) { choose(dialog, root() + "/a.pdf"); });
    EXPECT_EQ(call(LD_OpenFileBrowser, R"({"mode":1,"fileType":"pdf"})")["filepath"], root() + "/a.pdf");
}

// No lock is held over the dialog's event loop.
TEST_F(DialogTest, otherThreadsGoOnWhileADialogIsOpen)
{
    DialogUser user([&](QFileDialog& dialog) {
        std::thread([] {
            EXPECT_EQ(objectOf(LD_GetLocalConfig(nullptr))["errorCode"], 0);
            EXPECT_EQ(call(LD_SetLocalConfig, R"({"localConfig":{"a":"b"}})"), kNull);
            EXPECT_EQ(call(LD_SetOriginalString, R"({"encrypted":1,"key":"k"})"), kNull);
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
    for (const char* const request : {R"({"dir":"C:\\Video Files\\a#b"})", R"({"dir":""})", ""})
        EXPECT_EQ(call(LD_OpenDirectory, request), kNull);
    EXPECT_EQ(desktop.opened, QStringList({"file:///C:/Video Files/a%23b", "file://" + root(), "file://" + root()}));
}

} // namespace local_test
