#include "src/graphics/TextFont.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace quillmark::lumen_deck {
namespace {

constexpr auto kRetry = std::chrono::seconds(5);
constexpr size_t kMaxGlyphs = 4096;
constexpr unsigned kSpaceIndex = 3; // in the font that comes with the host; others have theirs elsewhere

bool isSpace(char32_t character, unsigned index)
{
    return character == U' ' || index == kSpaceIndex;
}

std::uint8_t coverageAt(const FT_Bitmap& bitmap, unsigned row, unsigned column)
{
    const unsigned char* const bytes = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
    if (bitmap.pixel_mode == FT_PIXEL_MODE_MONO)
        return bytes[column >> 3] & (0x80U >> (column & 7U)) ? 255 : 0;
    return bytes[column];
}

std::unique_ptr<Glyph> copyOf(const FT_GlyphSlot slot)
{
    const FT_Bitmap& bitmap = slot->bitmap;
    auto glyph = std::make_unique<Glyph>();
    glyph->left = slot->bitmap_left;
    glyph->top = slot->bitmap_top;
    glyph->width = static_cast<int>(bitmap.width);
    glyph->rows = static_cast<int>(bitmap.rows);
    glyph->coverage.reserve(static_cast<size_t>(bitmap.width) * bitmap.rows);
    for (unsigned row = 0; row < bitmap.rows; ++row) {
        for (unsigned column = 0; column < bitmap.width; ++column)
            glyph->coverage.push_back(coverageAt(bitmap, row, column));
    }
    return glyph;
}

} // namespace

void TextFont::FreeType::operator()(FT_LibraryRec_* library) const
{
    FT_Done_FreeType(library);
}

void TextFont::FreeType::operator()(FT_FaceRec_* face) const
{
    FT_Done_Face(face);
}

TextFont::TextFont(std::vector<std::string> files)
    : files_(std::move(files))
{
}

TextFont::~TextFont() = default;

const Glyph* TextFont::glyph(char32_t character, int pixels)
{
    if (!open())
        return nullptr;
    if (glyphs_.size() >= kMaxGlyphs)
        glyphs_.clear();
    const auto [place, isNew] = glyphs_.try_emplace({character, pixels});
    if (isNew)
        place->second = load(character, pixels);
    return place->second.get();
}

bool TextFont::open()
{
    if (face_)
        return true;
    const auto now = std::chrono::steady_clock::now();
    if (now < nextTry_)
        return false;
    nextTry_ = now + kRetry;
    openFirst();
    return face_ != nullptr;
}

void TextFont::openFirst()
{
    FT_Library library = nullptr;
    if (!library_ && FT_Init_FreeType(&library) == 0)
        library_.reset(library);
    if (!library_)
        return;
    for (const std::string& file : files_) {
        FT_Face face = nullptr;
        if (FT_New_Face(library_.get(), file.c_str(), 0, &face) == 0)
            return face_.reset(face);
    }
}

std::unique_ptr<Glyph> TextFont::load(char32_t character, int pixels)
{
    if (FT_Set_Pixel_Sizes(face_.get(), static_cast<FT_UInt>(pixels), static_cast<FT_UInt>(pixels)) != 0)
        return nullptr;
    const unsigned index = FT_Get_Char_Index(face_.get(), character);
    if (index == 0)
        return nullptr;
    if (!isSpace(character, index))
        return render(index);
    auto space = std::make_unique<Glyph>();
    space->left = pixels / 2;
    return space;
}

std::unique_ptr<Glyph> TextFont::render(unsigned index)
{
    if (FT_Load_Glyph(face_.get(), index, FT_LOAD_DEFAULT) != 0)
        return nullptr;
    const FT_GlyphSlot slot = face_->glyph;
    if (slot->format == FT_GLYPH_FORMAT_OUTLINE && FT_Outline_Embolden(&slot->outline, 1) != 0)
        return nullptr;
    if (slot->format != FT_GLYPH_FORMAT_BITMAP && FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0)
        return nullptr;
    return copyOf(slot);
}

} // namespace quillmark::lumen_deck
