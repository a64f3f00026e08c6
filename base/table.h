// Checked tables of fixed size. Code reads like the formulas, `RoomModel.faceVertexX(face, vertex)`, and a
// wrong subscript raises the error that is documented.
//
// The tables are meant for static storage: they are all zero at first and cost no memory until touched. Do
// not assign a whole table at once, which would touch all of it.
#pragma once

#include "base/runtimeerror.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace orv {

// A table's name as a template argument, so that naming it in messages takes no storage in the table.
template <std::size_t length>
struct tablename {
    char text[length];
    constexpr tablename(const char (&literal)[length]) {
        for (std::size_t i = 0; i < length; ++i) text[i] = literal[i];
    }
};

// Raises errorkind::subscript with the table's name, the index and the highest one allowed.
[[noreturn]] void subscriptfailure(std::string_view table, long long index, long long lowest,
                                   long long highest);

// Elements of type `element`, addressed by as many subscripts as there are values in `highest`, each from
// 0 to its `highest` inclusive; the last subscript's elements lie next to each other.
template <tablename name, class element, long long... highest>
struct fixedtable {
    static constexpr std::size_t subscripts = sizeof...(highest);
    static constexpr std::array<long long, subscripts> limits{highest...};

    template <class... index>
    element& operator()(index... at) {
        return cells[place(at...)];
    }
    template <class... index>
    const element& operator()(index... at) const {
        return cells[place(at...)];
    }

    // The highest value of the given subscript, the first being 0.
    static constexpr long long top(std::size_t subscript = 0) { return limits[subscript]; }

    // Sets the cells of the rows 0..last (first subscript) to zero, for tests and reloads.
    void clearrows(long long last) {
        const std::size_t end = (static_cast<std::size_t>(last) + 1) * (total / rows);
        for (std::size_t i = 0; i < end && i < total; ++i) cells[i] = element{};
    }

private:
    static constexpr std::size_t rows = static_cast<std::size_t>(limits[0]) + 1;
    static constexpr std::size_t total = (static_cast<std::size_t>(highest + 1) * ...);

    template <class... index>
    static std::size_t place(index... at) {
        static_assert(sizeof...(index) == subscripts, "one index for each subscript");
        const long long asked[] = {static_cast<long long>(at)...};
        std::size_t offset = 0;
        for (std::size_t i = 0; i < subscripts; ++i) {
            if (asked[i] < 0 || asked[i] > limits[i]) [[unlikely]]
                subscriptfailure({name.text, sizeof(name.text) - 1}, asked[i], 0, limits[i]);
            offset = offset * static_cast<std::size_t>(limits[i] + 1) + static_cast<std::size_t>(asked[i]);
        }
        return offset;
    }

    element cells[total];
};

// The same with two subscripts, row and column, each column's elements lying next to each other. For tables
// of which most rows fill a few columns only: the other columns stay untouched and cost no memory.
template <tablename name, class element, long long highestrow, long long highestcolumn>
struct columntable {
    element& operator()(long long row, long long column) { return cells[place(row, column)]; }
    const element& operator()(long long row, long long column) const { return cells[place(row, column)]; }

private:
    static constexpr std::size_t rows = static_cast<std::size_t>(highestrow) + 1;
    static constexpr std::size_t columns = static_cast<std::size_t>(highestcolumn) + 1;

    static std::size_t place(long long row, long long column) {
        constexpr std::string_view table{name.text, sizeof(name.text) - 1};
        if (row < 0 || row > highestrow) [[unlikely]]
            subscriptfailure(table, row, 0, highestrow);
        if (column < 0 || column > highestcolumn) [[unlikely]]
            subscriptfailure(table, column, 0, highestcolumn);
        return static_cast<std::size_t>(column) * rows + static_cast<std::size_t>(row);
    }

    element cells[rows * columns];
};

} // namespace orv
