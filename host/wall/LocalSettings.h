#pragma once

#include "host/wall/Deck.h"

#include <QJsonObject>
#include <QString>

#include <vector>

// The user's settings, which the library keeps in a file. Main thread.
namespace quillmark::lumen_wall {

struct Setting
{
    enum class Form
    {
        Folder,
        Choice, // the number of one of the `choices`
        Switch,
        Number // 1 to 50
    };

    const char* group;
    const char* key;
    const char* label;
    Form form;
    const char* standard; // of a folder, below the root
    const char* choices = "";
};

// Those that change what the wall does.
const std::vector<Setting>& settings();

QString standardOf(const Setting& setting);

// Why a value cannot be kept, empty if it can. Of a folder the last level may be missing, as the library makes it.
QString objection(const Setting& setting, const QString& value);

QJsonObject readSettings(const Deck& deck);

// Lays texts over what is in the file. False: the file does not say so afterwards.
bool writeSettings(Deck& deck, const QJsonObject& texts);

} // namespace quillmark::lumen_wall
