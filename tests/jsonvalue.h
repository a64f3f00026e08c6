// A small reader of JSON, for tests that compare with figures computed elsewhere.
#pragma once

#include <cctype>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/numbertext.h"

namespace orv {

struct jsonvalue {
    double number = 0;
    std::string text;
    std::vector<jsonvalue> items;
    std::map<std::string, jsonvalue> members;

    const jsonvalue& operator[](const std::string& name) const { return members.at(name); }
    const jsonvalue& operator[](std::size_t i) const { return items.at(i); }
};

inline jsonvalue readjson(const std::string& source, std::size_t& at) {
    const auto blank = [&] {
        while (at < source.size() && std::isspace(static_cast<unsigned char>(source[at]))) ++at;
    };
    const auto take = [&](char c) {
        blank();
        if (at >= source.size() || source[at] != c) return false;
        ++at;
        return true;
    };
    const auto word = [&] {
        std::string text;
        while (at < source.size() && source[at] != '"') {
            if (source[at] == '\\') {
                const char escaped = source[++at];
                text += escaped == 'n' ? '\n' : escaped == 'r' ? '\r' : escaped == 't' ? '\t' : escaped;
                ++at;
                continue;
            }
            text += source[at++];
        }
        ++at;
        return text;
    };
    jsonvalue value;
    if (take('{')) {
        while (!take('}')) {
            if (!take('"')) throw std::runtime_error("JSON: a member's name was expected");
            const std::string name = word();
            if (!take(':')) throw std::runtime_error("JSON: a colon was expected");
            value.members[name] = readjson(source, at);
            take(',');
        }
    } else if (take('[')) {
        while (!take(']')) {
            value.items.push_back(readjson(source, at));
            take(',');
        }
    } else if (take('"')) {
        value.text = word();
    } else {
        blank();
        const numberprefix prefix = readprefix(std::string_view(source).substr(at));
        value.number = prefix.value;
        at += prefix.length;
        while (at < source.size() && std::isalpha(static_cast<unsigned char>(source[at])))
            value.text += source[at++]; // true, false, null
    }
    return value;
}

inline jsonvalue readjson(const std::string& source) {
    std::size_t at = 0;
    return readjson(source, at);
}

} // namespace orv
