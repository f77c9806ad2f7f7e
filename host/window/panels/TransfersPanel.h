#pragma once

#include "host/wall/Operator.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

#include <map>

namespace quillmark::lumen_wall {

// One transfer: what it is, how far it has come, and a button that stops it.
class TransferRow : public QWidget
{
    Q_OBJECT

public:
    TransferRow();

    void show(const Transfer& transfer);

signals:
    void stopWanted();
    void folderWanted();

private:
    QLabel* const title_;
    QLabel* const text_;
    QProgressBar* const bar_;
    QToolButton* const folder_;
    QToolButton* const stop_;
};

// Starts uploads, downloads and upgrades, and lists them as they go.
class TransfersPanel : public QWidget
{
    Q_OBJECT

public:
    TransfersPanel(Operator& wall, QWidget* parent);

    QSize sizeHint() const override { return {300, 600}; }

private:
    void addFields();
    QWidget* fileField();
    QWidget* listOfAll();
    const TransferKind& kind() const;
    void orderTabs();
    void showFields();
    void addIfNeeded(TransferField field, const char* label);
    void refreshStart();
    void start();
    void chooseFile();
    void refresh();
    TransferRow* makeRow(const Transfer& transfer);
    QString missing() const; // what keeps the transfer from being started

    Deck& deck_;
    Transfers& transfers_;
    QComboBox* const kind_;
    QFormLayout* const form_;
    std::map<TransferField, QLineEdit*> texts_;
    std::map<TransferField, QWidget*> fields_; // what stands in the form
    QCheckBox* const put_;
    QLineEdit* const user_;
    QLineEdit* const password_;
    QPushButton* const start_;
    QPushButton* const forget_;
    QVBoxLayout* const rows_;
    std::map<int, TransferRow*> rowOf_;
};

} // namespace quillmark::lumen_wall
