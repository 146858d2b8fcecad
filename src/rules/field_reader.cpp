// Bounded line reading and field parsing for the data files.
#include "rules/field_reader.h"

#include <climits>

bool readUntil(std::istream& in, std::string& text, char end, std::size_t limit) {
    text.clear();
    std::streambuf* buffer = in.rdbuf();
    if (!in.good() || buffer == nullptr) {
        in.setstate(std::ios::failbit);
        return false;
    }
    bool any = false;
    // A file buffer reports a failed read by throwing; the streams' own members would catch it too,
    // but at a call for each character.
    try {
        for (;;) {
            int c = buffer->sbumpc();
            if (c == std::char_traits<char>::eof()) {
                in.setstate(any ? std::ios::eofbit : std::ios::eofbit | std::ios::failbit);
                break;
            }
            any = true;
            if (c == static_cast<unsigned char>(end)) break;
            if (text.size() < limit) text.push_back(static_cast<char>(c));
        }
    } catch (...) {
        in.setstate(any ? std::ios::badbit : std::ios::badbit | std::ios::failbit);
    }
    return any;
}

bool readLine(std::istream& in, std::string& line) {
    bool any = readUntil(in, line, '\n', maxLineLength);
    // Files edited on other systems end their lines with "\r\n".
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return any;
}

int parseNumber(std::string_view field) {
    std::size_t i = 0;
    bool negative = false;
    if (i < field.size() && (field[i] == '+' || field[i] == '-')) negative = field[i++] == '-';
    long long value = 0;
    for (; i < field.size() && field[i] >= '0' && field[i] <= '9'; ++i) {
        value = value * 10 + (field[i] - '0');
        if (value > static_cast<long long>(INT_MAX) + 1) value = static_cast<long long>(INT_MAX) + 1;
    }
    if (negative) value = -value;
    if (value > INT_MAX) value = INT_MAX;
    return static_cast<int>(value);
}

float parseFraction(std::string_view field) {
    std::size_t i = 0;
    bool negative = false;
    if (i < field.size() && (field[i] == '+' || field[i] == '-')) negative = field[i++] == '-';
    double value = 0;
    for (; i < field.size() && field[i] >= '0' && field[i] <= '9'; ++i)
        value = value * 10 + (field[i] - '0');
    if (i < field.size() && field[i] == '.') {
        double scale = 0.1;
        for (++i; i < field.size() && field[i] >= '0' && field[i] <= '9'; ++i, scale /= 10)
            value += (field[i] - '0') * scale;
    }
    // Thousands of digits would overflow a float; no colour or distance needs them.
    if (value > 1e30) value = 1e30;
    return static_cast<float>(negative ? -value : value);
}

std::string_view FieldReader::text() {
    if (exhausted) return {};
    std::size_t end = line.find('|', position);
    std::string_view field =
        line.substr(position, end == std::string_view::npos ? line.npos : end - position);
    if (end == std::string_view::npos)
        exhausted = true;
    else
        position = end + 1;
    return field;
}

DiceCode FieldReader::code() {
    int dice = number();
    int pips = number();
    return DiceCode(dice, pips);
}

int peekByte(std::istream& in) {
    int c = in.peek();
    return c == std::char_traits<char>::eof() ? -1 : static_cast<unsigned char>(c);
}
