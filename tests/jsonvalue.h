// A small reader of JSON, for tests that compare with figures computed elsewhere. It takes well-formed files.
#pragma once

#include "base/numbertext.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

struct jsonvalue {
    double number = 0;
    std::string text;
    std::vector<jsonvalue> items;
    std::map<std::string, jsonvalue> members;

    const jsonvalue& operator[](const std::string& name) const { return members.at(name); }
    const jsonvalue& operator[](std::size_t i) const { return items.at(i); }
};

// Reads the value that `rest` begins with and takes it from there, with the comma or colon behind it.
inline jsonvalue takejson(std::string_view& rest) {
    const auto skip = [&](std::string_view letters) {
        rest.remove_prefix(std::min(rest.find_first_not_of(letters), rest.size()));
    };
    constexpr std::string_view between = " \r\n\t,:";
    jsonvalue value;
    skip(between);
    const char first = rest.empty() ? '\0' : rest[0];
    if (first == '"') {
        for (rest.remove_prefix(1); rest.at(0) != '"'; rest.remove_prefix(1)) {
            const bool escaped = rest[0] == '\\';
            if (escaped) rest.remove_prefix(1);
            const char c = rest.at(0);
            value.text += !escaped ? c : c == 'n' ? '\n' : c == 'r' ? '\r' : c == 't' ? '\t' : c;
        }
        rest.remove_prefix(1);
    } else if (first == '{' || first == '[') {
        rest.remove_prefix(1);
        for (skip(between); rest.at(0) != '}' && rest[0] != ']'; skip(between)) {
            if (first == '{') {
                const std::string name = takejson(rest).text;
                value.members[name] = takejson(rest);
            } else {
                value.items.push_back(takejson(rest));
            }
        }
        rest.remove_prefix(1);
    } else {
        const numberprefix prefix = readprefix(rest);
        value.number = prefix.value;
        rest.remove_prefix(prefix.length);
        skip("truefalsn"); // the words that are no numbers
    }
    return value;
}

inline jsonvalue readjson(std::string_view source) {
    return takejson(source);
}

} // namespace orv
