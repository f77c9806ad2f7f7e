#include "engine/present/WarpProjection.h"

#include <string>

namespace tide {

namespace {

enum Uniform : std::size_t
{
    Front,
    Right,
    Up,
    Rows,
    Span,
    Turn,
    Centre,
    Radius,
    HalfAngle
};
const std::vector<const char*> kUniforms{"front", "right",  "up",     "rows",     "span",
                                         "turn",  "centre", "radius", "halfAngle"};

constexpr const char* kHead = R"(
uniform vec3 front, right, up;
uniform vec2 rows;
uniform float span, turn, halfAngle;
uniform vec2 centre, radius;
const float pi = 3.14159265358979;
const vec4 black = vec4(0.0, 0.0, 0.0, 1.0);
vec4 placed(vec2 p)
{
    vec2 place = centre + radius * p;
    return clamp(place, 0.0, 1.0) == place ? colourAt(place) : black;
}
vec4 seen(vec3 scene)
{
    float across = length(scene.xy);
    float angle = atan(across, scene.z);
    return angle > halfAngle ? black : placed(scene.xy * (angle / (halfAngle * max(across, 1e-9))));
}
vec3 plane() { return front + (2.0 * at.x - 1.0) * right + (1.0 - 2.0 * at.y) * up; }
float row() { return rows.x + at.y * (rows.y - rows.x); }
vec3 heading()
{
    float aside = (fract(at.x - turn) - 0.5) * span;
    return cos(aside) * front + sin(aside) * right;
}
)";

// By WarpKind.
constexpr std::array<const char*, kWarpKinds> kMains{
    R"(
void main()
{
    float c = cos(2.0 * pi * turn), s = sin(2.0 * pi * turn);
    vec2 p = 2.0 * at - 1.0;
    gl_FragColor = placed(vec2(c * p.x + s * p.y, c * p.y - s * p.x));
})",
    R"(
void main() { gl_FragColor = seen(plane()); })",
    R"(
void main() { gl_FragColor = seen(heading() + row() * up); })",
    R"(
void main() { gl_FragColor = seen(cos(row()) * heading() + sin(row()) * up); })",
    R"(
void main()
{
    vec3 scene = normalize(plane());
    gl_FragColor = colourAt(vec2(0.5 + atan(scene.x, scene.z) / (2.0 * pi), 0.5 + asin(scene.y) / pi));
})",
    R"(
void main() { gl_FragColor = colourAt(vec2(fract(0.5 + (at.x - 0.5) * span + turn), row())); })"};

PictureShader shaderFor(std::size_t kind)
{
    return PictureShader(std::string(kHead) + kMains[kind], kUniforms);
}

void setRay(GLint uniform, const Ray& direction)
{
    glUniform3f(uniform, static_cast<float>(direction.x), static_cast<float>(direction.y),
                static_cast<float>(direction.z));
}

void setPoint(GLint uniform, double x, double y)
{
    glUniform2f(uniform, static_cast<float>(x), static_cast<float>(y));
}

// A strip goes round: a line that leaves it at one side comes in at the other, `period` windows away.
void drawLine(const std::vector<std::optional<Point>>& points, bool round, double period, double shift)
{
    bool isOpen = false;
    double lastX = 0.0;
    for (const std::optional<Point>& point : points) {
        if (point && !isOpen) {
            glBegin(GL_LINE_STRIP);
            lastX = point->x;
        } else if (!point && isOpen) {
            glEnd();
        }
        isOpen = point.has_value();
        if (!point)
            continue;
        lastX = round ? point->x - period * std::round((point->x - lastX) / period) : point->x;
        glVertex2d(2.0 * (lastX + shift) - 1.0, 1.0 - 2.0 * point->y);
    }
    if (isOpen)
        glEnd();
}

void drawOutline(const Outline& line, const Part& part, bool round)
{
    const auto& [red, green, blue, alpha] = line.colour;
    const double period = 1.0 / (part.right - part.left);
    glColor4ub(red, green, blue, alpha);
    glLineWidth(line.width);
    for (const double shift : {0.0, -period, period}) {
        if (shift == 0.0 || round)
            drawLine(line.points, round, period, shift);
    }
}

void drawOutlines(const WarpSource::Look& look, const Part& part)
{
    if (look.outlines.empty())
        return;
    const bool round = look.warp.kind == WarpKind::Cylinder || look.warp.kind == WarpKind::Unrolled;
    glPushAttrib(GL_ENABLE_BIT | GL_LINE_BIT | GL_CURRENT_BIT | GL_COLOR_BUFFER_BIT);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    for (const Outline& line : look.outlines)
        drawOutline(line, part, round);
    glPopAttrib();
}

} // namespace

WarpProjection::WarpProjection()
    : shaders_{shaderFor(0), shaderFor(1), shaderFor(2), shaderFor(3), shaderFor(4), shaderFor(5)}
{
}

void WarpProjection::draw(const FrameTexture& picture, const WarpSource::Look& look, const Part& part)
{
    PictureShader& shader = shaders_[static_cast<std::size_t>(look.warp.kind)];
    if (!shader.begin(picture))
        return;
    setUniforms(shader, picture, look.warp);
    drawQuad(part);
    PictureShader::end();
    drawOutlines(look, part);
}

void WarpProjection::setUniforms(const PictureShader& shader, const FrameTexture& picture, const Warp& warp) const
{
    const Circle circle = warp.lens.circleIn(picture.width(), picture.height());
    setRay(shader.uniform(Front), warp.front);
    setRay(shader.uniform(Right), warp.right);
    setRay(shader.uniform(Up), warp.up);
    setPoint(shader.uniform(Rows), warp.rows[0], warp.rows[1]);
    glUniform1f(shader.uniform(Span), static_cast<float>(warp.span));
    glUniform1f(shader.uniform(Turn), static_cast<float>(warp.turn));
    setPoint(shader.uniform(Centre), circle.centre.x, circle.centre.y);
    setPoint(shader.uniform(Radius), circle.radius.x, circle.radius.y);
    glUniform1f(shader.uniform(HalfAngle), static_cast<float>(warp.lens.halfAngle));
}

} // namespace tide
