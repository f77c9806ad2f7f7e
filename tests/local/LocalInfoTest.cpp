#include "src/local_info.h"

#include "src/auxiliary.h"
#include "tests/local/LocalFiles.h"
#include "tests/support/Threads.h"

#include <QDateTime>

#include <atomic>
#include <random>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace local_test {

using LocalInfoTest = RootFolder;

int writePair(const QString& value)
{
    const QJsonDocument change(QJsonObject{{"localConfig", QJsonObject{{"first", value}, {"last~", value}}}});
    return LocalInfo().WriteLocalFile(&change);
}

bool isWhole(const QJsonObject& config)
{
    return !config.isEmpty() && config["first"] == config["last~"];
}

TEST_F(LocalInfoTest, firstReadMakesFoldersAndDefaults)
{
    const QJsonObject config = objectOf(LocalInfo().ReadLocalFile())["localConfig"].toObject();
    EXPECT_EQ(config.size(), 29);
    EXPECT_EQ(config["FaceSnapPicPath"], root() + "/Web/InteligentFaceFiles");
    EXPECT_EQ(configBytes(), QJsonDocument(config).toJson());
    EXPECT_EQ(QDir(root() + "/Web").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 8);
}

TEST_F(LocalInfoTest, rootFollowsTheEnvironment)
{
    QTemporaryDir other;
    EXPECT_EQ(LocalInfo().GetLocalInfo("capturePath"), root() + "/Web/CaptureFiles");
    qputenv("PWD", other.path().toLocal8Bit());
    EXPECT_EQ(LocalInfo().GetLocalInfo("capturePath"), other.path() + "/Web/CaptureFiles");
    qunsetenv("PWD");
    EXPECT_EQ(auxiliary().GetUserHomePath(), "/opt/quillmark");
    for (const QString& none : {QString("/proc/nothing"), root() + "/made one level at a time/folder"}) {
        qputenv("PWD", none.toLocal8Bit());
        EXPECT_EQ(objectOf(LocalInfo().ReadLocalFile()),
                  object(R"({"errorModule":"getLocalConfig","errorCode":-1,"localConfig":""})"));
    }
}

TEST_F(LocalInfoTest, writeMergesAndFlattens)
{
    LocalInfo info;
    info.GetLocalInfo("ivsMode");
    const QJsonDocument change = json(R"({"localConfig":{"ivsMode":1,"packgeSize":"2","a":{"b":"c","n":7,"deep":{"z":1},
        "same":"x"},"same":"later","t":true,"list":[1],"fraction":1.5,"huge":1e12,"none":{},"null":null,
        "recordPath":"/videos/Übung/録画"}})");
    for (int round = 0; round < 3; ++round) // other alphabets survive many
        EXPECT_EQ(info.WriteLocalFile(&change), 0);
    const QJsonObject config = QJsonDocument::fromJson(configBytes()).object();
    const QJsonObject expected = object(R"({"ivsMode":1,"packgeSize":"2","b":"c","n":"","deep":"","same":"later","t":"",
        "list":"","none":"","null":"","fraction":0,"huge":0,"buffNumberType":"2"})");
    for (const QString& key : expected.keys())
        EXPECT_EQ(config[key], expected[key]) << key.toStdString();
    EXPECT_FALSE(config.contains("a") || config.contains("z"));
    EXPECT_EQ(info.GetLocalInfo("ivsMode").toInt(), 1);
    EXPECT_EQ(LocalInfo().GetLocalInfo("recordPath"), QString::fromUtf8("/videos/Übung/録画"));
    EXPECT_EQ(info.GetLocalInfo("noSuchKey"), "");
    EXPECT_EQ(info.WriteLocalFile(nullptr), -1);
}

TEST_F(LocalInfoTest, brokenFileReadsAsEmptyAndIsNotRepaired)
{
    LocalInfo info;
    info.CreatLocalInfo();
    for (const QByteArray& broken :
         {QByteArray("{\"ivsMode\":"), QByteArray("\xff\xfe\x80"), QByteArray(), QByteArray(100000, '[')}) {
        writeBytes(configPath(), broken);
        EXPECT_EQ(info.GetLocalInfo("ivsMode"), "");
        EXPECT_EQ(objectOf(info.ReadLocalFile()), object(R"({"errorModule":"","errorCode":0,"localConfig":{}})"));
        EXPECT_EQ(configBytes(), broken);
    }
    const QJsonDocument change = json(R"({"localConfig":{"only":"this"}})");
    EXPECT_EQ(info.WriteLocalFile(&change), 0);
    EXPECT_EQ(configBytes(), json(R"({"only":"this"})").toJson());
    writeBytes(configPath(), configBytes() + '\0' + "rest");
    EXPECT_EQ(info.GetLocalInfo("only"), "this");
}

TEST_F(LocalInfoTest, writesInPlaceWhereTheFolderIsReadOnly)
{
    constexpr uid_t kNobody = 65534;
    LocalInfo().CreatLocalInfo();
    ASSERT_EQ(chmod(qPrintable(root()), 0755) + chmod(qPrintable(configPath()), 0666), 0);
    ASSERT_EQ(chmod(qPrintable(root() + "/.HarborKit"), 0555), 0);
    const uid_t user = geteuid();
    ASSERT_EQ(user == 0 ? seteuid(kNobody) : 0, 0);
    const QJsonDocument change = json(R"({"localConfig":{"ivsMode":"in place"}})");
    EXPECT_EQ(LocalInfo().WriteLocalFile(&change), 0);
    EXPECT_EQ(seteuid(user), 0);
    EXPECT_EQ(LocalInfo().GetLocalInfo("ivsMode"), "in place");
    chmod(qPrintable(root() + "/.HarborKit"), 0755);
}

// LUMEN_DECK_LONG_TESTS makes it two hundred times.
TEST_F(LocalInfoTest, killedWriterLeavesAWholeFile)
{
    const int rounds = qEnvironmentVariableIsSet("LUMEN_DECK_LONG_TESTS") ? 200 : 20;
    std::mt19937 random(20);
    std::uniform_int_distribution<useconds_t> moment(0, 8000);
    LocalInfo().CreatLocalInfo();
    for (int round = 0; round < rounds; ++round) {
        const pid_t writer = fork();
        if (writer == 0) {
            for (int value = 0;; ++value)
                writePair(QString(value % 5000, 'x'));
        }
        usleep(moment(random));
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        ASSERT_TRUE(isWhole(QJsonDocument::fromJson(configBytes()).object())) << configBytes().toStdString();
    }
    const QDir folder(root() + "/.HarborKit");
    writeBytes(folder.filePath("local.json.killed"), "{");
    for (const QFileInfo& entry : folder.entryInfoList(QDir::Files)) {
        QFile file(entry.filePath());
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime);
    }
    LocalInfo().CreatLocalInfo();
    EXPECT_EQ(folder.entryList(QDir::Files | QDir::Hidden), QStringList("local.json"));
}

TEST_F(LocalInfoTest, manyThreadsSeeWholeFilesOnly)
{
    LocalInfo info;
    ASSERT_EQ(writePair("0"), 0);
    std::atomic<int> torn{0};
    onThreads(4, [&](int writer) {
        for (int turn = 0; turn < 25; ++turn) {
            torn += writePair(QString::number(writer * 1000 + turn)) != 0;
            torn += !isWhole(objectOf(info.ReadLocalFile())["localConfig"].toObject());
            torn += info.GetLocalInfo("first").isEmpty();
        }
    });
    EXPECT_EQ(torn, 0);
}

} // namespace local_test
