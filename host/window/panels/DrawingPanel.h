#pragma once

#include "host/wall/Operator.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTimer>
#include <QToolButton>

class QBoxLayout;
class QFormLayout;

namespace quillmark::lumen_wall {

// Draws on the selected window: tools with their looks and limits, texts, the electronic zoom, and below them the
// documents of the shapes as they change.
class DrawingPanel : public QWidget
{
    Q_OBJECT

public:
    DrawingPanel(Operator& wall, QWidget* parent);

    QSize sizeHint() const override { return {250, 600}; }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    using Verb = void (DrawingPanel::*)();
    struct Row
    {
        const char* icon;
        const char* tip;
        const char* keys;
        Verb verb;
    };
    static const Row kTools[];
    static const Row kErasers[];

    QBoxLayout* buttonLine(const Row* rows, size_t count, QActionGroup* group);
    QWidget* colours();
    void addLimits(QFormLayout& form);
    void addTexts(QFormLayout& form);

    void select();
    void drawRectangle() { draw("Rect"); }
    void drawPolygon() { draw("Polygon"); }
    void drawLine() { draw("Line"); }
    void drawPoint() { draw("Point"); }
    void paintCells();
    void zoomByFrame() { zoom(1); }
    void zoomByDrag() { zoom(2); }
    void draw(const char* drawType);
    void zoom(int type);
    void setDrawing(bool on, int window);

    void removeSelected();
    void clearWindow();
    void clearWall();

    void pickColour(const QString& colour);
    void takeUpTool();       // of the panel, in the window that is selected now
    void moveTo(int window); // the tool goes with the selection
    void setTexts();
    void showShapes();

    Deck& deck_;
    QActionGroup tools_;
    Verb tool_ = &DrawingPanel::select;
    int window_ = 0; // that has the tool
    QString colour_;
    QCheckBox* const fill_;
    QSpinBox* const mostShapes_;
    QSpinBox* const mostPoints_;
    QLineEdit* const name_;
    QCheckBox* const date_;
    QLineEdit* const text_;
    QPlainTextEdit* const documents_;
    QTimer poll_;
};

} // namespace quillmark::lumen_wall
