#include "host/window/panels/TransfersPanel.h"

#include "host/window/Actions.h"
#include "host/window/Mark.h"

#include <QHBoxLayout>
#include <QScrollArea>

namespace quillmark::lumen_wall {

namespace {

using Field = TransferField;
using State = Transfer::State;

struct FieldRow
{
    Field field;
    const char* label;
    const char* hint;
};

constexpr FieldRow kTexts[] = {
    {Field::Address, "Address", "http://camera/files/1"},
    {Field::Status, "Status", "asked for the device's progress"},
    {Field::File, "File", "what is sent"},
    {Field::SaveAs, "Save as", "the name in the address"},
    {Field::Body, "Body", "posted; none: a plain request"},
    {Field::ContentType, "Content", "application/octet-stream"},
    {Field::Flag, "Flag", "told to the device"},
};

QToolButton* makeButton(const char* icon, const char* tip)
{
    auto* button = new QToolButton;
    button->setIcon(makeIcon(icon));
    button->setToolTip(tip);
    return button;
}

const char* mood(State state)
{
    return state == State::Failed ? "bad" : state == State::Done ? "good" : "";
}

} // namespace

TransferRow::TransferRow()
    : title_(new QLabel)
    , text_(new QLabel)
    , bar_(new QProgressBar)
    , folder_(makeButton("folder", "Show the folder"))
    , stop_(makeButton("stop", "Stop"))
{
    setObjectName("transfer");
    title_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    text_->setObjectName("transferText");
    text_->setWordWrap(true);
    text_->setTextFormat(Qt::PlainText);
    title_->setTextFormat(Qt::PlainText);
    bar_->setTextVisible(false);
    bar_->setFixedHeight(4);
    auto* head = new QHBoxLayout;
    head->addWidget(title_, 1);
    head->addWidget(folder_);
    head->addWidget(stop_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 4, 0, 4);
    column->setSpacing(3);
    column->addLayout(head);
    column->addWidget(bar_);
    column->addWidget(text_);
    connect(stop_, &QToolButton::clicked, this, &TransferRow::stopWanted);
    connect(folder_, &QToolButton::clicked, this, &TransferRow::folderWanted);
}

// A bar without an end says that something goes on of which no more is told.
void TransferRow::show(const Transfer& transfer)
{
    const bool running = transfer.state == State::Running;
    const bool told = transfer.progress.has_value();
    const bool waits = !transfer.kind->stop;
    title_->setText(transfer.what);
    title_->setToolTip(QStringLiteral("%1: %2").arg(transfer.kind->name, transfer.what));
    bar_->setVisible(running ? told || waits : transfer.state == State::Done);
    bar_->setRange(0, running && !told ? 0 : 100);
    bar_->setValue(transfer.state == State::Done ? 100 : transfer.progress.value_or(0));
    const QString percent = running && told ? QStringLiteral("%1 %").arg(*transfer.progress) : transfer.text;
    text_->setText(percent.isEmpty() ? QString(transfer.kind->name) : transfer.kind->name + QString(" · ") + percent);
    setMark(*text_, "mood", mood(transfer.state));
    folder_->setVisible(transfer.state == State::Done && !transfer.folder.isEmpty());
    stop_->setVisible(running);
    stop_->setEnabled(!waits);
    stop_->setToolTip(waits ? "It ends by itself" : "Stop");
}

TransfersPanel::TransfersPanel(Operator& wall, QWidget* parent)
    : QWidget(parent)
    , deck_(wall.deck())
    , transfers_(wall.transfers())
    , kind_(new QComboBox)
    , form_(new QFormLayout)
    , put_(new QCheckBox("PUT instead of POST"))
    , user_(new QLineEdit)
    , password_(new QLineEdit)
    , start_(new QPushButton("Start"))
    , forget_(new QPushButton("Clear the list"))
    , rows_(new QVBoxLayout)
{
    for (const TransferKind& each : transferKinds())
        kind_->addItem(each.name);
    password_->setEchoMode(QLineEdit::Password);
    addFields();
    auto* column = new QVBoxLayout(this);
    column->addLayout(form_);
    column->addWidget(start_);
    column->addWidget(listOfAll(), 1);
    column->addWidget(forget_);

    connect(kind_, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &TransfersPanel::showFields);
    connect(start_, &QPushButton::clicked, this, &TransfersPanel::start);
    connect(forget_, &QPushButton::clicked, &transfers_, &Transfers::forgetEnded);
    connect(&transfers_, &Transfers::changed, this, &TransfersPanel::refresh);
    showFields();
    orderTabs();
    refresh();
}

// From top to bottom, whatever is shown.
void TransfersPanel::orderTabs()
{
    QWidget* before = kind_;
    const auto next = [&before](QWidget* widget) {
        setTabOrder(before, widget);
        before = widget;
    };
    for (const FieldRow& row : kTexts) {
        next(texts_[row.field]);
        if (row.field == Field::File)
            next(fields_[row.field]->findChild<QToolButton*>());
    }
    for (QWidget* const widget : std::initializer_list<QWidget*>{put_, user_, password_, start_})
        next(widget);
}

void TransfersPanel::addFields()
{
    for (const FieldRow& row : kTexts) {
        auto* text = new QLineEdit(this);
        text->setPlaceholderText(row.hint);
        texts_[row.field] = text;
        fields_[row.field] = row.field == Field::File ? fileField() : text;
        connect(text, &QLineEdit::textChanged, this, &TransfersPanel::refreshStart);
        connect(text, &QLineEdit::returnPressed, start_, &QPushButton::click);
    }
    fields_[Field::Put] = put_;
    put_->setParent(this);
    connect(password_, &QLineEdit::returnPressed, start_, &QPushButton::click);
}

QWidget* TransfersPanel::fileField()
{
    auto* field = new QWidget(this);
    auto* line = new QHBoxLayout(field);
    line->setContentsMargins({});
    line->setSpacing(2);
    QToolButton* const choose = makeButton("open-file", "Choose the file");
    line->addWidget(texts_[Field::File], 1);
    line->addWidget(choose);
    connect(choose, &QToolButton::clicked, this, &TransfersPanel::chooseFile);
    return field;
}

QWidget* TransfersPanel::listOfAll()
{
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 4, 0);
    column->addLayout(rows_);
    column->addStretch();
    auto* area = new QScrollArea;
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    return area;
}

const TransferKind& TransfersPanel::kind() const
{
    return transferKinds()[static_cast<size_t>(kind_->currentIndex())];
}

// The rows that the kind needs, anew: rows that are only hidden leave gaps.
void TransfersPanel::showFields()
{
    while (form_->rowCount() > 0) {
        const QFormLayout::TakeRowResult row = form_->takeRow(0);
        delete (row.labelItem ? row.labelItem->widget() : nullptr);
        delete row.labelItem;
        delete row.fieldItem;
    }
    form_->addRow("What", kind_);
    for (const FieldRow& row : kTexts)
        addIfNeeded(row.field, row.label);
    addIfNeeded(Field::Put, "");
    form_->addRow("User", user_);
    form_->addRow("Password", password_);
    refreshStart();
}

void TransfersPanel::addIfNeeded(TransferField field, const char* label)
{
    QWidget* const widget = fields_[field];
    const bool needed = kind().has(field);
    if (needed)
        form_->addRow(label, widget);
    widget->setVisible(needed);
}

void TransfersPanel::refreshStart()
{
    const QString lack = missing();
    start_->setEnabled(lack.isEmpty());
    start_->setToolTip(lack);
}

QString TransfersPanel::missing() const
{
    if (texts_.at(Field::Address)->text().trimmed().isEmpty())
        return "The address is missing";
    return kind().has(Field::File) && texts_.at(Field::File)->text().trimmed().isEmpty() ? "The file is missing"
                                                                                         : QString();
}

void TransfersPanel::start()
{
    if (!missing().isEmpty())
        return;
    TransferOrder order{&kind(), {}, user_->text(), password_->text()};
    for (const auto& [field, text] : texts_)
        order.fields[field] = text->text();
    order.fields[Field::Put] = put_->isChecked() ? "1" : "";
    transfers_.start(order);
}

void TransfersPanel::chooseFile()
{
    const QJsonObject answer = deck_.ask("LD_OpenFileBrowser", {{"mode", 1}, {"fileType", "*"}}).toObject();
    const QString path = answer.value("filepath").toString();
    if (!path.isEmpty())
        texts_[Field::File]->setText(path);
}

void TransfersPanel::refresh()
{
    std::map<int, TransferRow*> gone = rowOf_;
    bool ended = false;
    for (const Transfer& transfer : transfers_.list()) {
        gone.erase(transfer.number);
        TransferRow*& row = rowOf_[transfer.number];
        if (!row)
            row = makeRow(transfer);
        row->show(transfer);
        ended = ended || transfer.state != State::Running;
    }
    for (const auto& [number, row] : gone) {
        rowOf_.erase(number);
        row->deleteLater();
    }
    forget_->setVisible(ended);
}

TransferRow* TransfersPanel::makeRow(const Transfer& transfer)
{
    auto* row = new TransferRow;
    rows_->insertWidget(0, row);
    connect(row, &TransferRow::stopWanted, this, [this, number = transfer.number] { transfers_.stop(number); });
    connect(row, &TransferRow::folderWanted, this, [this, folder = transfer.folder] {
        deck_.ask("LD_OpenDirectory", {{"dir", folder}});
    });
    return row;
}

} // namespace quillmark::lumen_wall
