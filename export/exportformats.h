// The output formats of the export: channels of the file, and blocks, which are the responses that lie one
// behind the other in it. A MIMO format has a block for each element of the source side and a channel for
// each element of the receiver side; its label tells both, blocks first.
#pragma once

#include <array>
#include <string_view>

namespace orv {

constexpr int mostchannels = 36, mostblocks = 32;

// How one side of a sound path becomes numbers, one for each channel or block.
enum class encoder {
    omni,      // 1
    stereo,    // two crossed cardioids
    harmonics, // spherical harmonics, AmbiX
    ring8x8,   // tables of virtual microphones
    ring16,
    sphere32,
    sphere12
};

struct exportformat {
    std::string_view label;
    int channels, blocks;
    encoder receiverside, sourceside;
};

// By the row of the list.
constexpr std::array<exportformat, 18> exportformats = {{
    {"1ch_Omni", 1, 1, encoder::omni, encoder::omni},
    {"2ch_Stereo", 2, 1, encoder::stereo, encoder::omni},
    {"4ch_1st_order_Ambisonics_(Ambix)", 4, 1, encoder::harmonics, encoder::omni},
    {"9ch_2nd_order_Ambisonics_(Ambix)", 9, 1, encoder::harmonics, encoder::omni},
    {"16ch_3rd_order_Ambisonics_(Ambix)", 16, 1, encoder::harmonics, encoder::omni},
    {"25ch_4th_order_Ambisonics_(Ambix)", 25, 1, encoder::harmonics, encoder::omni},
    {"36ch_5th_order_Ambisonics_(Ambix)", 36, 1, encoder::harmonics, encoder::omni},
    {"8ch_Tessera_Arbor", 8, 1, encoder::ring8x8, encoder::omni},
    {"16ch_Tessera_Vestry", 16, 1, encoder::ring8x8, encoder::omni},
    {"16ch_Ring_Hall_Ivory", 16, 1, encoder::ring16, encoder::omni},
    {"32ch_SPS_EM32", 32, 1, encoder::sphere32, encoder::omni},
    {"4x4_MIMO_Ambix1xAmbix1", 4, 4, encoder::harmonics, encoder::harmonics},
    {"9x16_MIMO_Ambix2xAmbix3", 16, 9, encoder::harmonics, encoder::harmonics},
    {"16x16_MIMO_Ambix3xAmbix3", 16, 16, encoder::harmonics, encoder::harmonics},
    {"12x16_MIMO_SPS12xAmbix3", 16, 12, encoder::harmonics, encoder::sphere12},
    {"32x16_MIMO_SPS32xAmbix3", 16, 32, encoder::harmonics, encoder::sphere32},
    {"12x32_MIMO_SPS12xSPS32", 32, 12, encoder::sphere32, encoder::sphere12},
    {"32x32_MIMO_SPS32xSPS32", 32, 32, encoder::sphere32, encoder::sphere32},
}};

// The row with this label, or 0 when none has it.
constexpr int exportformatof(std::string_view label) {
    for (int row = 0; row < static_cast<int>(exportformats.size()); ++row)
        if (exportformats[static_cast<std::size_t>(row)].label == label) return row;
    return 0;
}

} // namespace orv
