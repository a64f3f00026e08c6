// Rayons sets: what of them comes in, the oddities of thick faces, and the file of the export.
#include "tests/interchange/roomtext.h"

#include "interchange/rayons.h"

using namespace orv;

namespace {

struct fileset {
    std::string faces = "3\r\n"
                        "2 3  0 0 0  4 0 0  4 3 0  0 0 1\r\n"
                        "-0 4, 1 1 1\r\n 2 1 1 2 2 1 1 2 1, 0,0,1\r\n"
                        "-1 .5 3 0 0 5 1 0 5 1 1 5 1 0 -2\r\n\r\n"; // behind it all are shifted
    std::string materials = "materials\r\n3\r\n0, Glass \r\n-1 Wood floor, 2 none\r\n";
    std::string sources =
        "sources\r\n2\r\n7 1 2 3 .5 0 -1 90 0\r\nUnknown\r\n8 0 0 0 1 1 1 0 0\r\nLeft horn.spk \r\n";
    std::string receivers = "receivers\r\n1\r\n9 4 5 6 1 0 0\r\n";
};

struct rayons : sessiontest {
    fileset set;

    rayons() {
        for (std::int32_t face = 1; face <= 4; ++face) RoomModel.faceMaterial(face) = 70;
        writetext("Orvanta.mat", "0 Glass,0\r\n1 Wood floor,0\r\n2 Glass,0\r\n");
    }

    void load() const {
        writetext("a.b.geo", set.faces);
        writetext("A.MAT", set.materials);
        writetext("a.sou", set.sources);
        writetext("a.rec", set.receivers);
        loadrayons(inside("a.b.geo"));
    }
};

TEST_F(rayons, ReadsASet) {
    load();
    // Face number 1, in row 2, is thick: it moves along its normal, and faces behind it would too. As the
    // first thick one it gives its vertex count to row 1.
    EXPECT_EQ(roomtext(),
              " Wall\n Face 0  0  3     1  1  1  2  1  1  2  2  1\n End\n"
              " Wall\n Face 0  1  3     .01  0  4.98  1.01  0  4.98  1.01  1  4.98\n End\n"
              " Wall\n Face 0  70  3     0  0  0  4  0  0  4  3  0\n End\n"
              " Source  1  2  3  1.5  2  2  0 Omni.spk\n Source  0  0  0  1  1  1  0 Left horn.spk\n"
              " Receiver  4  5  6  1  0  0\n");
    EXPECT_EQ(RoomModel.roomMaxX, 4.0F); // of the faces alone, as they were
    EXPECT_EQ(SessionState.targetZ, 2.5F);

    set.faces = "2 -1 .5 3 0 0 0 1 0 0 1 1 0 0 0 1  0 4 0 0 1 1 0 1 1 1 1 0 1 1 0 0 1 ";
    load();
    EXPECT_EQ(RoomModel.faceVertexCount(1), 4);
    EXPECT_EQ(RoomModel.faceVertexZ(1, 1), 1.01F); // behind a thick one, not thick itself
}

TEST_F(rayons, NamesFileLineAndReason) {
    load();
    expectrefusals("refusedrayons.txt",
                   {"f1\r\n0 3 0 0 0", "f1\r\n0 121 0", "f1\r\n75000 3", "f75001\r\n",
                    "f1 -1 0 1 3.4e38 0 0 3.4e38 0 0\r\n", "mhead\r\n1\r\nGlass\r\n",
                    "mhead\r\n2\r\n0 Glass\r\n", "shead\r\n1\r\n1 2 3", "r", "rhead\r\n-1\r\n"},
                   [&](const std::string& text) { // its first letter names the file
                       set = {};
                       (text[0] == 'f'   ? set.faces
                        : text[0] == 'm' ? set.materials
                        : text[0] == 's' ? set.sources
                                         : set.receivers) = text.substr(1);
                       load();
                   });
    set = {};
    load();
    std::filesystem::remove("a.rec");
    EXPECT_EQ(kindof([] { loadrayons("absent.geo"); }), errorkind::filenotfound);
    EXPECT_EQ(RoomModel.faceCount, 3);
    EXPECT_EQ(kindof([] { loadrayons("a.b.geo"); }), errorkind::filenotfound);
    EXPECT_EQ(RoomModel.faceCount, 0);
}

TEST_F(rayons, WritesFourCornersOfEachFace) {
    load();
    RoomModel.faceCount = 2;
    RoomModel.faceVertexX(2, 4) = RoomModel.faceVertexY(2, 4) = -7; // behind a triangle: what the model holds
    RoomModel.faceVertexZ(2, 4) = .5F;
    saverayons("out.dat");
    EXPECT_EQ(readtext("out.dat"),
              " 1  1  1  1\r\n 2  2  1  1\r\n 3  2  2  1\r\n 4  1  2  1\r\n"
              " 5  .01  0  4.98\r\n 6  1.01  0  4.98\r\n 7  1.01  1  4.98\r\n 8 -7 -7  .5\r\n"
              "Faces:\r\n 1  2  3  4\r\n 4  3  2  1\r\n 5  6  7  8\r\n 8  7  6  5\r\n");
}

} // namespace
