#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct FT_FaceRec_;
struct FT_LibraryRec_;

namespace quillmark::lumen_deck {

// The coverage of one character, and how it moves the pen: by `left` before it is drawn, by `width` after.
struct Glyph
{
    int left = 0;
    int top = 0; // of the first row above the base line
    int width = 0;
    int rows = 0;
    std::vector<std::uint8_t> coverage;
};

// A font file and the glyphs rendered from it so far. Not thread-safe.
class TextFont
{
public:
    explicit TextFont(std::vector<std::string> files); // the first one that opens is taken
    ~TextFont();
    TextFont(const TextFont&) = delete;
    TextFont& operator=(const TextFont&) = delete;

    // Null when the character takes no room: the font lacks it, or there is no font. A missing file is looked for again
    // from time to time. Valid until the next call.
    const Glyph* glyph(char32_t character, int pixels);

private:
    struct FreeType
    {
        void operator()(FT_LibraryRec_* library) const;
        void operator()(FT_FaceRec_* face) const;
    };

    bool open();
    void openFirst();
    std::unique_ptr<Glyph> load(char32_t character, int pixels);
    std::unique_ptr<Glyph> render(unsigned index);

    const std::vector<std::string> files_;
    std::unique_ptr<FT_LibraryRec_, FreeType> library_;
    std::unique_ptr<FT_FaceRec_, FreeType> face_; // goes before the library
    std::chrono::steady_clock::time_point nextTry_;
    std::map<std::pair<char32_t, int>, std::unique_ptr<Glyph>> glyphs_; // null for those that take no room
};

} // namespace quillmark::lumen_deck
