#include "host/window/panels/SettingsPanel.h"

#include "host/window/Actions.h"
#include "host/window/Mark.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollArea>
#include <QSpinBox>
#include <QToolButton>

#include <algorithm>

namespace quillmark::lumen_wall {

namespace {

constexpr int kMostPictures = 50;

QJsonValue toKeep(const Setting& setting, const QString& value)
{
    return setting.form == Setting::Form::Number ? QJsonValue(value.toInt()) : QJsonValue(value);
}

} // namespace

SettingsPanel::SettingsPanel(Operator& wall, QWidget* parent)
    : QWidget(parent)
    , deck_(wall.deck())
    , state_(new QLabel)
    , standards_(new QPushButton("Defaults"))
    , apply_(new QPushButton("Apply"))
{
    auto* area = new QScrollArea;
    area->setWidget(content());
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    state_->setObjectName("settingsState");
    state_->setWordWrap(true);
    standards_->setToolTip("Show the defaults; nothing is kept before it is applied");

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(standards_);
    buttons->addWidget(apply_, 1);
    auto* column = new QVBoxLayout(this);
    column->addWidget(area, 1);
    column->addWidget(state_);
    column->addLayout(buttons);

    connect(standards_, &QPushButton::clicked, this, &SettingsPanel::showStandards);
    connect(apply_, &QPushButton::clicked, this, &SettingsPanel::apply);
}

QWidget* SettingsPanel::content()
{
    auto* content = new QWidget;
    auto* form = new QFormLayout(content);
    form->setContentsMargins(0, 0, 8, 0);
    QString group;
    for (const Setting& setting : settings()) {
        if (group != setting.group) {
            group = setting.group;
            auto* heading = new QLabel(group);
            heading->setObjectName("heading");
            form->addRow(heading);
        }
        editors_.push_back(makeEditor(setting));
        if (setting.form == Setting::Form::Switch)
            form->addRow(editors_.back().field);
        else
            form->addRow(setting.label, editors_.back().field);
    }
    return content;
}

SettingsPanel::Editor SettingsPanel::makeEditor(const Setting& setting)
{
    switch (setting.form) {
    case Setting::Form::Folder:
        return folderEditor(setting);
    case Setting::Form::Choice:
        return choiceEditor(setting);
    case Setting::Form::Switch:
        return switchEditor(setting);
    case Setting::Form::Number:
        break;
    }
    return numberEditor(setting);
}

SettingsPanel::Editor SettingsPanel::folderEditor(const Setting& setting)
{
    auto* text = new QLineEdit;
    auto* choose = new QToolButton;
    choose->setIcon(makeIcon("folder"));
    choose->setToolTip("Choose the folder");
    auto* field = new QWidget;
    auto* line = new QHBoxLayout(field);
    line->setContentsMargins({});
    line->setSpacing(2);
    line->addWidget(text, 1);
    line->addWidget(choose);
    connect(text, &QLineEdit::textChanged, this, &SettingsPanel::refresh);
    connect(text, &QLineEdit::returnPressed, apply_, &QPushButton::click);
    connect(choose, &QToolButton::clicked, this, [this, text] {
        const QJsonObject answer = deck_.ask("LD_OpenFileBrowser", {{"mode", 0}}).toObject();
        if (!answer.value("filepath").toString().isEmpty())
            text->setText(answer.value("filepath").toString());
    });
    return {&setting,
            field,
            [text] { return text->text().trimmed(); },
            [text](const QString& value) { text->setText(value); },
            {}};
}

SettingsPanel::Editor SettingsPanel::choiceEditor(const Setting& setting)
{
    auto* list = new QComboBox;
    list->addItems(QString(setting.choices).split('|'));
    connect(list, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &SettingsPanel::refresh);
    return {&setting,
            list,
            [list] { return QString::number(list->currentIndex()); },
            [list](const QString& value) { list->setCurrentIndex(value.toInt()); },
            {}};
}

SettingsPanel::Editor SettingsPanel::switchEditor(const Setting& setting)
{
    auto* box = new QCheckBox(setting.label);
    connect(box, &QCheckBox::toggled, this, &SettingsPanel::refresh);
    return {&setting,
            box,
            [box] { return QString(box->isChecked() ? "1" : "0"); },
            [box](const QString& value) { box->setChecked(value.toInt() != 0); },
            {}};
}

SettingsPanel::Editor SettingsPanel::numberEditor(const Setting& setting)
{
    auto* number = new QSpinBox;
    number->setRange(1, kMostPictures);
    number->setSuffix(" pictures");
    connect(number, QOverload<int>::of(&QSpinBox::valueChanged), this, &SettingsPanel::refresh);
    return {&setting,
            number,
            [number] { return QString::number(number->value()); },
            [number](const QString& value) { number->setValue(value.toInt()); },
            {}};
}

// What a person has begun to change stays.
void SettingsPanel::showEvent(QShowEvent*)
{
    if (!changed())
        load();
}

bool SettingsPanel::changed() const
{
    return std::any_of(editors_.begin(), editors_.end(),
                       [](const Editor& editor) { return !editor.kept.isNull() && editor.value() != editor.kept; });
}

void SettingsPanel::load()
{
    const QJsonObject kept = readSettings(deck_);
    for (Editor& editor : editors_) {
        editor.show(kept.value(editor.setting->key).toVariant().toString());
        editor.kept = editor.value();
    }
    refresh();
}

void SettingsPanel::showStandards()
{
    for (const Editor& editor : editors_)
        editor.show(standardOf(*editor.setting));
}

// Only what was changed is written, so that others may write beside.
void SettingsPanel::apply()
{
    QJsonObject texts;
    for (const Editor& editor : editors_) {
        if (editor.value() != editor.kept)
            texts[editor.setting->key] = toKeep(*editor.setting, editor.value());
    }
    const bool written = writeSettings(deck_, texts);
    if (written)
        load();
    state_->setText(written ? "Kept. Streams and recordings take it up when they are begun."
                            : "The settings cannot be written.");
    setMark(*state_, "bad", !written);
}

void SettingsPanel::refresh()
{
    QString first;
    for (const Editor& editor : editors_) {
        const QString wrong = objection(*editor.setting, editor.value());
        editor.field->setToolTip(wrong.isEmpty() ? editor.value() : wrong);
        if (auto* text = editor.field->findChild<QLineEdit*>(); text && editor.setting->form == Setting::Form::Folder)
            setMark(*text, "bad", !wrong.isEmpty());
        if (first.isEmpty() && !wrong.isEmpty())
            first = QStringLiteral("%1: %2").arg(editor.setting->label, wrong);
    }
    state_->setText(first);
    setMark(*state_, "bad", true);
    apply_->setEnabled(first.isEmpty() && changed());
}

} // namespace quillmark::lumen_wall
