#pragma once

#include "host/wall/LocalSettings.h"
#include "host/wall/Operator.h"

#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include <functional>
#include <vector>

namespace quillmark::lumen_wall {

// The settings that the library keeps. They are written when they are applied, and taken up by what is begun then.
class SettingsPanel : public QWidget
{
    Q_OBJECT

public:
    SettingsPanel(Operator& wall, QWidget* parent);

    QSize sizeHint() const override { return {320, 600}; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Editor
    {
        const Setting* setting;
        QWidget* field;
        std::function<QString()> value;
        std::function<void(const QString&)> show;
        QString kept; // in the file
    };

    QWidget* content();
    Editor makeEditor(const Setting& setting);
    Editor folderEditor(const Setting& setting);
    Editor choiceEditor(const Setting& setting);
    Editor switchEditor(const Setting& setting);
    Editor numberEditor(const Setting& setting);

    bool changed() const;
    void load();
    void showStandards();
    void apply();
    void refresh();

    Deck& deck_;
    std::vector<Editor> editors_;
    QLabel* const state_;
    QPushButton* const standards_;
    QPushButton* const apply_;
};

} // namespace quillmark::lumen_wall
