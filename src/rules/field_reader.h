// The pieces that every data file reader shares: bounded line reading, "|"-separated fields, and
// numbers that read as 0 unless the field starts with one.
#pragma once

#include "rules/dice.h"

#include <cstddef>
#include <istream>
#include <string>
#include <string_view>

// Longer lines are cut here, so that no file can make a reader allocate without bound.
inline constexpr std::size_t maxLineLength = 8192;

// Reads up to the next `end`, which is taken but not kept; characters beyond `limit` are skipped.
// A file that cannot be read (a directory in its place, an I/O error) ends the text there, with
// badbit set: what came before is kept, as from a file cut short. False, with failbit set, when
// nothing was left to read.
bool readUntil(std::istream& in, std::string& text, char end, std::size_t limit);
// One line without its line end and without a trailing carriage return, at most maxLineLength
// characters of it.
bool readLine(std::istream& in, std::string& line);

// An optional sign and leading digits, saturated to the int range; anything else reads as 0.
int parseNumber(std::string_view field);
// An optional sign, digits, and a fraction after a point; anything else reads as 0.
float parseFraction(std::string_view field);

// Walks the fields of one line. A field asked for beyond the last is empty, so a truncated line
// gives empty strings and zeros.
class FieldReader {
  public:
    explicit FieldReader(std::string_view line) : line(line) {}

    std::string_view text();
    int number() { return parseNumber(text()); }
    float fraction() { return parseFraction(text()); }
    // Two fields: dice, then pips.
    DiceCode code();

  private:
    std::string_view line;
    std::size_t position = 0;
    bool exhausted = false;
};

// The next character of a stream as an unsigned byte, or -1 at its end.
int peekByte(std::istream& in);
