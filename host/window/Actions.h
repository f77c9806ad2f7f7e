#pragma once

#include "host/wall/Operator.h"

#include <QAction>
#include <QHash>
#include <QKeySequence>
#include <QObject>
#include <QToolBar>

#include <functional>
#include <vector>

namespace quillmark::lumen_wall {

// What the actions' looks depend on.
struct WallView
{
    CellState cell; // the selected one
    bool playing;
    int grid;
    bool dragable;
};

// The verbs of the toolbar, one row each. A new verb is a row here and an icon.
class Actions : public QObject
{
    Q_OBJECT

public:
    explicit Actions(Operator& wall);

    void addTo(QToolBar& bar, const char* group);
    QAction* action(const char* name) const { return actions_.value(name); }
    QList<QAction*> all() const { return actions_.values(); }
    void refresh(const WallView& view);

private:
    QHash<QString, QAction*> actions_;
};

// A drawing of the resources, and its faint double for what is disabled.
QIcon makeIcon(const QString& name);

// An action with its icon, and with its keys in the tooltip.
QAction* makeAction(QObject* parent, const QString& icon, const QString& tip, const QString& keys);

} // namespace quillmark::lumen_wall
