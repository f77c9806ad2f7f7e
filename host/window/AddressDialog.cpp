#include "host/window/AddressDialog.h"

#include "host/wall/Deck.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>

namespace quillmark::lumen_wall {

AddressDialog::AddressDialog(int cell, const CellState& before, QWidget* parent)
    : QDialog(parent)
    , address_(new QLineEdit(before.source))
    , user_(new QLineEdit(before.auth.section(':', 0, 0)))
    , password_(new QLineEdit(before.auth.section(':', 1)))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Open an address in window %1").arg(cell + 1));
    address_->setPlaceholderText("rtsp://camera/stream, https://server/film.mp4");
    address_->setMinimumWidth(400);
    address_->selectAll();
    password_->setEchoMode(QLineEdit::Password);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QPushButton* play = buttons->button(QDialogButtonBox::Ok);
    play->setText("Play");
    play->setEnabled(!before.source.isEmpty());
    connect(address_, &QLineEdit::textChanged, play,
            [play](const QString& text) { play->setEnabled(!text.trimmed().isEmpty()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &AddressDialog::choose);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* rows = new QFormLayout(this);
    rows->addRow("Address", address_);
    rows->addRow("User", user_);
    rows->addRow("Password", password_);
    rows->addRow(buttons);
}

void AddressDialog::choose()
{
    emit chosen(address_->text().trimmed(), authOf(user_->text(), password_->text()));
    accept();
}

} // namespace quillmark::lumen_wall
