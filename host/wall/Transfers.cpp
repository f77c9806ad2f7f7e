#include "host/wall/Transfers.h"

#include "host/wall/ErrorText.h"
#include "host/wall/LocalSettings.h"
#include "host/wall/StreamMessages.h"

#include <QDate>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>

namespace quillmark::lumen_wall {

namespace {

constexpr int kPollMs = 400;
constexpr int kDone = 100;
constexpr int kLongestText = 300; // a server may say a whole page
constexpr int kRefused = -1;
constexpr int kNoFolder = -3;

using Field = TransferField;
using State = Transfer::State;

// The part of a server's answer that fits a line.
QString firstWords(const QString& text)
{
    return text.simplified().left(kLongestText);
}

QString lastPart(const QString& address)
{
    const QUrl url(address);
    return url.fileName().isEmpty() ? url.host() : url.fileName();
}

QString startReason(int code)
{
    return code == kNoFolder ? QString("the folder for downloads cannot be made") : transferReason(code);
}

QJsonObject requestOf(const TransferOrder& order)
{
    QJsonObject request{{"auth", authOf(order.user, order.password)}};
    for (const auto& [field, key] : order.kind->fields) {
        const auto given = order.fields.find(field);
        const QString text = given == order.fields.end() ? QString() : given->second.trimmed();
        request[key] = field == Field::Put ? QJsonValue(text.isEmpty() ? 0 : 1) : QJsonValue(text);
    }
    return request;
}

bool isSameCall(const char* one, const char* other)
{
    return qstrcmp(one, other) == 0;
}

} // namespace

bool TransferKind::has(TransferField wanted) const
{
    return std::any_of(fields.begin(), fields.end(), [=](const auto& field) { return field.first == wanted; });
}

// An export of a configuration is a download: LD_ExportDeviceConfig would hold the wall until the device has answered.
const std::vector<TransferKind>& transferKinds()
{
    static const std::vector<TransferKind> table{
        {"Download",
         "LD_StartDownload",
         "LD_StopDownload",
         {{Field::Address, "downloadUrl"}, {Field::SaveAs, "filename"}, {Field::Body, "downloadXml"}},
         &startReason},
        {"Upload a file",
         "LD_UploadFile",
         nullptr,
         {{Field::Address, "uploadUrl"},
          {Field::File, "filepath"},
          {Field::ContentType, "contentType"},
          {Field::Put, "iReserve"}},
         &transferReason},
        {"Upload in the background",
         "LD_StartAsynUpload",
         "LD_StopAsynUpload",
         {{Field::Address, "uploadUrl"},
          {Field::Status, "statusUrl"},
          {Field::File, "filepath"},
          {Field::ContentType, "pReserve"},
          {Field::Put, "iReserve"}},
         &transferReason},
        {"Upgrade a device",
         "LD_StartUpgrade",
         "LD_StopUpgrade",
         {{Field::Address, "upgradeUrl"},
          {Field::Status, "statusUrl"},
          {Field::File, "filepath"},
          {Field::ContentType, "pReserve"},
          {Field::Flag, "upgradeFlag"}},
         &engineReason},
        {"Import a configuration",
         "LD_ImportDeviceConfig",
         nullptr,
         {{Field::Address, "uploadUrl"}, {Field::File, "filename"}},
         &transferReason},
        {"Export a configuration",
         "LD_StartDownload",
         "LD_StopDownload",
         {{Field::Address, "downloadUrl"}, {Field::SaveAs, "filename"}},
         &startReason},
    };
    return table;
}

Transfers::Transfers(Deck& deck)
    : deck_(deck)
{
    connect(&timer_, &QTimer::timeout, this, &Transfers::poll);
    timer_.setInterval(kPollMs);
}

void Transfers::start(const TransferOrder& given)
{
    TransferOrder order = given;
    QString& name = order.fields[Field::SaveAs];
    if (name.trimmed().isEmpty())
        name = lastPart(order.fields[Field::Address]);
    const bool isDownload = order.kind->has(Field::SaveAs);
    Transfer transfer{++lastNumber_, order.kind, isDownload ? name : QFileInfo(order.fields[Field::File]).fileName()};
    if (isDownload)
        transfer.folder =
            readSettings(deck_).value("downloadPath").toString() + '/' + QDate::currentDate().toString("yyyy-MM-dd");
    giveUp(*order.kind);
    list_.insert(list_.begin(), transfer);
    if (order.kind->stop)
        begun(transfer.number, deck_.ask(order.kind->start, requestOf(order)));
    else
        deck_.askApart(order.kind->start, requestOf(order), this,
                       [this, number = transfer.number](const Answer& answer) { begun(number, answer); });
    emit changed();
}

// The library has one background upload and one upgrade.
void Transfers::giveUp(const TransferKind& kind)
{
    if (kind.has(Field::Status)) {
        for (const Transfer& other : std::vector<Transfer>(list_)) {
            if (other.kind == &kind && other.state == State::Running)
                stop(other.number);
        }
    }
}

// A call that waits has the end for its answer, the others the beginning.
void Transfers::begun(int number, const Answer& answer)
{
    Transfer* const transfer = find(number);
    if (isError(answer)) {
        end(number, State::Failed, whyNot(*transfer, answer.toObject()));
    } else if (!transfer->kind->stop) {
        end(number, State::Done, "done");
    } else {
        transfer->download = answer.toObject().value("downloadId").toInt(-1);
        timer_.start();
    }
}

void Transfers::poll()
{
    bool active = false;
    for (const Transfer& transfer : std::vector<Transfer>(list_)) {
        if (transfer.state != State::Running || !transfer.kind->stop)
            continue;
        active = true;
        follow(transfer.number);
    }
    if (!active)
        timer_.stop();
    emit changed();
}

void Transfers::follow(int number)
{
    const char* const call = find(number)->kind->start;
    if (isSameCall(call, "LD_StartDownload"))
        followDownload(number);
    else if (isSameCall(call, "LD_StartUpgrade"))
        followUpgrade(number);
    else
        followUpload(number);
}

void Transfers::followDownload(int number)
{
    const QJsonObject info = deck_.ask("LD_GetDownloadInfo", {{"downloadId", find(number)->download}}).toObject();
    const int status =
        isError(info) ? info.value("errorCode").toInt() : info.value("downloadStatus").toString().toInt();
    if (status != 0)
        end(number, State::Failed, transferReason(status));
    else
        progress(number, info.value("downloadProgress").toString().toInt());
}

void Transfers::followUpgrade(int number)
{
    const QJsonObject info = deck_.ask("LD_UpgradeProgress").toObject();
    if (!isError(info))
        progress(number, info.value("upgradeProgress").toString().toInt());
    else
        end(number, State::Failed,
            transferReason(deck_.ask("LD_UpgradeStatus").toObject().value("errorCode").toString().toInt()));
}

// The library tells of a background upload nothing but its failure.
void Transfers::followUpload(int number)
{
    const QString trouble = deck_.ask("LD_GetUploadErrorInfo").toObject().value("errorInfo").toString();
    if (trouble.isEmpty())
        find(number)->text = "under way, or done: only a failure is told";
    else
        end(number, State::Failed, firstWords(trouble));
}

void Transfers::progress(int number, int percent)
{
    find(number)->progress = percent;
    if (percent >= kDone)
        end(number, State::Done, "done");
}

// What has ended by itself is still known to the library, and taken from there.
void Transfers::end(int number, State state, const QString& text)
{
    Transfer* const transfer = find(number);
    if (transfer->kind->stop)
        deck_.ask(transfer->kind->stop, {{"downloadId", transfer->download}});
    transfer->state = state;
    transfer->text = text;
    const Severity severity = state == State::Failed ? Severity::Failure : Severity::Note;
    emit reported(static_cast<int>(severity), -1,
                  QStringLiteral("%1, %2: %3").arg(QString(transfer->kind->name).toLower(), transfer->what, text));
    emit changed();
}

void Transfers::stop(int number)
{
    const Transfer* const transfer = find(number);
    if (transfer && transfer->state == State::Running && transfer->kind->stop)
        end(number, State::Stopped, "stopped");
}

void Transfers::forgetEnded()
{
    const auto ended = [](const Transfer& transfer) { return transfer.state != State::Running; };
    list_.erase(std::remove_if(list_.begin(), list_.end(), ended), list_.end());
    emit changed();
}

// The reason, and what the server says.
QString Transfers::whyNot(const Transfer& transfer, const QJsonObject& error) const
{
    const int code = error.value("errorCode").toInt();
    if (code == kRefused && (transfer.what.endsWith(".exe") || transfer.what.endsWith(".dat")))
        return "programs and data of them are not sent";
    QString said = error.value("errorInfo").toString();
    if (isSameCall(transfer.kind->start, "LD_ImportDeviceConfig"))
        said = deck_.ask("LD_GetIpcImportErrorInfo").toObject().value("errorInfo").toString();
    const QString reason = transfer.kind->reason(code);
    return said.isEmpty() ? reason : reason + ": " + firstWords(said);
}

Transfer* Transfers::find(int number)
{
    const auto found =
        std::find_if(list_.begin(), list_.end(), [=](const Transfer& transfer) { return transfer.number == number; });
    return found == list_.end() ? nullptr : &*found;
}

} // namespace quillmark::lumen_wall
