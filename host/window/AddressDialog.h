#pragma once

#include "host/wall/CellBook.h"

#include <QDialog>
#include <QLineEdit>

namespace quillmark::lumen_wall {

// Asks for the address of a stream and who asks for it, beside the running wall.
class AddressDialog : public QDialog
{
    Q_OBJECT

public:
    AddressDialog(int cell, const CellState& before, QWidget* parent);

signals:
    void chosen(const QString& address, const QString& auth);

private:
    void choose();

    QLineEdit* const address_;
    QLineEdit* const user_;
    QLineEdit* const password_;
};

} // namespace quillmark::lumen_wall
