#pragma once

#include <QDialog>
#include <QLineEdit>

namespace quillmark::lumen_wall {

// Asks for the address of a stream, beside the running wall.
class AddressDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AddressDialog(int cell, QWidget* parent);

signals:
    void chosen(const QString& address);

private:
    QLineEdit* const address_;
};

} // namespace quillmark::lumen_wall
