#include "host/window/AddressDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillmark::lumen_wall {

AddressDialog::AddressDialog(int cell, QWidget* parent)
    : QDialog(parent)
    , address_(new QLineEdit)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Open an address in window %1").arg(cell + 1));
    address_->setPlaceholderText("rtsp://camera/stream, https://server/film.mp4");
    address_->setMinimumWidth(420);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel);
    QPushButton* open = buttons->button(QDialogButtonBox::Open);
    open->setText("Play");
    open->setEnabled(false);
    connect(address_, &QLineEdit::textChanged, open,
            [open](const QString& text) { open->setEnabled(!text.trimmed().isEmpty()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(this, &QDialog::accepted, this, [this] { emit chosen(address_->text().trimmed()); });

    auto* column = new QVBoxLayout(this);
    column->addWidget(new QLabel("Address of a stream or a file"));
    column->addWidget(address_);
    column->addWidget(buttons);
}

} // namespace quillmark::lumen_wall
