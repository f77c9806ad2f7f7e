#pragma once

#include "host/wall/Deck.h"

#include <QObject>
#include <QTimer>

#include <map>
#include <optional>
#include <vector>

namespace quillmark::lumen_wall {

// What a person gives for a transfer. A kind of transfer takes some of these, each under a name of its own.
enum class TransferField
{
    Address,
    Status,
    File,
    SaveAs,
    Body,
    ContentType,
    Flag,
    Put
};

struct TransferKind
{
    const char* name;
    const char* start; // the function
    const char* stop;  // null: the function returns when all is over
    std::vector<std::pair<TransferField, const char*>> fields;
    QString (*reason)(int code); // of a start that fails

    bool has(TransferField field) const;
};

const std::vector<TransferKind>& transferKinds();

struct Transfer
{
    enum class State
    {
        Running,
        Done,
        Failed,
        Stopped
    };

    int number; // to name it by
    const TransferKind* kind;
    QString what;
    State state = State::Running;
    std::optional<int> progress = {}; // percent, where one is told
    QString text = {};
    QString folder = {}; // where a download goes
    int download = -1;
};

struct TransferOrder
{
    const TransferKind* kind;
    std::map<TransferField, QString> fields; // Put counts if it is not empty
    QString user, password;
};

// The uploads, downloads and the upgrade that a person has begun, newest first, followed until they end. Main thread.
class Transfers : public QObject
{
    Q_OBJECT

public:
    explicit Transfers(Deck& deck);

    const std::vector<Transfer>& list() const { return list_; }
    void start(const TransferOrder& order);
    void stop(int number); // a running one that can be stopped
    void forgetEnded();

signals:
    void changed();
    void reported(int severity, int cell, const QString& text);

private:
    using Answer = QJsonValue;
    void begun(int number, const Answer& answer);
    void poll();
    void follow(int number);
    void followDownload(int number);
    void followUpgrade(int number);
    void followUpload(int number);
    void progress(int number, int percent);
    void end(int number, Transfer::State state, const QString& text);
    void giveUp(const TransferKind& kind);
    QString whyNot(const Transfer& transfer, const QJsonObject& error) const;
    Transfer* find(int number);

    Deck& deck_;
    std::vector<Transfer> list_;
    QTimer timer_;
    int lastNumber_ = 0;
};

} // namespace quillmark::lumen_wall
