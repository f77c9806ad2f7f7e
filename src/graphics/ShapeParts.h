#pragma once

#include "src/graphics/GraphicsBase.h"

// What several shapes have in common, as functions on plain data.
namespace quillmark::lumen_deck {

// Fields of a shape's document. A field that is absent or says nothing useful leaves the target as it is.

void readEditRights(const QJsonObject& object, bool& movable, bool& resizable);
void readColor(const QJsonObject& object, const QString& key, QColor& color);
void readFill(const QJsonObject& object, QVariant& fill); // a QColor, unless the document asks for a translucent one
std::shared_ptr<JsonError> readTips(const QJsonObject& object, QString& tips);
std::shared_ptr<JsonError> readId(const QJsonObject& object, int& id);

// An array of point descriptors. `module` and `line` stand in the error for an entry that is no array.
std::shared_ptr<JsonError> readPoints(const QJsonObject& object, std::vector<QPointF>& points, const QString& module,
                                      int line);

QJsonArray pointToJson(const QPointF& point);
QJsonArray pointsToJson(const QPointF* points, size_t count);
void writeId(QJsonObject& object, int id); // -1 is not written

// Drags. Each applies whole or not at all: nothing leaves the window.

void dragVertex(QPointF& vertex, const QPointF& to);
void dragVertexOf(std::vector<QPointF>& points, int index, const QPointF& to); // no such vertex: nothing
void dragAll(QPointF* points, size_t count, const QPointF& delta);

int vertexAt(const std::vector<QPointF>& points, const QPointF& position, const QSize& size); // -1: none
int rankByEdge(double distance); // of a press inside an area, by its distance to the nearest edge

// Marks.

constexpr size_t kShownVertices = 20; // of a polygon or a chain, with the edges between them

void renderArrow(const DrawColor& color, const QLineF& line, const QSize& size); // a head at the line's second point
// An arrow out of the middle of a segment, to the one side (direction 1) or the other (2); none for other values.
void renderSideMark(const DrawColor& color, const QLineF& segment, int direction, const QSize& size);

} // namespace quillmark::lumen_deck
