// The list of inputs: its job file, its sliders, and the sum that it starts.
#include "tools/sumlist.h"

#include "tests/failures.h"
#include "tests/golden.h"

using namespace orv;

namespace {

struct sumlists : sessiontest {
    sumlist list;

    // Chooses files by the dialog, by their names in the test's directory.
    void choose(const std::vector<std::string>& names) {
        std::string paths;
        for (const std::string& name : names) paths += (paths.empty() ? "" : "\n") + inside(name);
        scripted::expectopen(paths, "Select output files to be summed");
        selectinputs(list);
    }
    std::string cells(std::size_t row) const {
        std::string text;
        for (const std::string& cell : list.job.files.at(row).cell) text += cell + "|";
        return text;
    }
};

TEST_F(sumlists, HeadingsAndNewRows) {
    std::vector<std::string> headings;
    for (std::size_t column = 0; column < 12; ++column)
        headings.push_back(bandheading(column) + "/" + columnheading(column));
    expectgolden("sumheadings.txt", headings);
    movegain(list, 0, 5); // without a row nothing is there to be moved
    choose({"a._01", "b._02"});
    EXPECT_EQ(list.job.directory, directory.path);
    EXPECT_EQ(list.row, 0U);
    EXPECT_EQ(listcell(list, 1, 0) + cells(1), "b._020|0|0|0|0|0|0|0|0|0|0|");
    scripted::expectopen(scripted::cancelled);
    selectinputs(list);
    EXPECT_EQ(list.job.files.size(), 2U);
}

TEST_F(sumlists, SlidersWriteTheirCellsAndReadThem) {
    choose({"a", "b"});
    movedelay(list, 20);
    movegain(list, 2, -3);
    movegain(list, 9, 12);
    EXPECT_EQ(cells(0), " 20|0|0| 3|0|0|0|0|0|0|-12|");
    list.ganged = true;
    movegain(list, 0, -28); // all go up by 28, and two as far as they can
    EXPECT_EQ(cells(0), " 20| 28| 28| 30| 28| 28| 28| 28| 28| 28| 16|");
    movegain(list, 0, -27);
    EXPECT_EQ(list.gainslider[2], -29) << "an end changes the offsets";

    list.job.files[1].cell[1] = " 30.5"; // stays as it stands until its slider moves
    list.job.files[1].cell[2] = "-2.5";
    list.job.files[1].cell[0] = " 900";
    selectrow(list, 1);
    EXPECT_TRUE(list.gainslider[0] == -30 && list.gainslider[1] == 2 && list.delayslider == 500)
        << "cut to their range, halves to even";
    EXPECT_EQ(listcell(list, 1, 2), " 30.5");
    movegain(list, 0, 0);
    EXPECT_EQ(listcell(list, 1, 2), " 0");
}

TEST_F(sumlists, JobFilesAreWrittenAsTheCellsStandAndReadLeniently) {
    choose({"a._01"});
    movedelay(list, 12);
    list.job.output = "both.___";
    list.job.directory = "/halls/\xC3\xBC";
    writejob(inside("a.job"), list.job);
    EXPECT_EQ(readtext(inside("a.job")),
              "\"/halls/\xFC\"\r\n\"both.___\"\r\n\"a._01\", 12,0,0,0,0,0,0,0,0,0,0\r\n");

    writetext(inside("b.JOB"), "\"C:\\halls\"\n  sum it.___\nmy hall._01 , 5 ,1,-2.50,3 4,5,6,7,8,9,010\n\n");
    choose({"b.JOB"});
    EXPECT_EQ(list.jobname, inside("b.JOB"));
    ASSERT_EQ(list.job.files.size(), 2U) << "behind what is listed";
    EXPECT_EQ(list.job.directory + "|" + list.job.output + "|" + list.job.files[1].name,
              "C:\\halls|sum it.___|my hall._01");
    EXPECT_EQ(cells(1), " 5| 1|-2.5| 3| 4| 5| 6| 7| 8| 9| 10|");

    const sumlist before = list;
    for (const char* line : {"a,1,2\r\n", "a,1,2,3,4,word,6,7,8,9,10,11\r\n"}) {
        writetext(inside("bad.job"), "d\r\no\r\n" + std::string(line));
        EXPECT_NE(failureof([&] { choose({"bad.job"}); }).text.find("bad.job, line "), std::string::npos)
            << line;
    }
    EXPECT_EQ(list.jobname, before.jobname);
}

TEST_F(sumlists, HoldsAHundredAndNinetyNine) {
    choose(std::vector<std::string>(199, "a"));
    EXPECT_EQ(list.job.files.size(), 199U);
    writejob(inside("full.job"), list.job);
    EXPECT_EQ(readjob(inside("full.job")).files.size(), 199U);
    EXPECT_EQ(kindof([&] { choose({"a"}); }), errorkind::subscript);
    EXPECT_EQ(list.job.files.size(), 199U);
    writetext(inside("full.job"), readtext(inside("full.job")) + "a,0,0,0,0,0,0,0,0,0,0,0\r\n");
    EXPECT_NE(failureof([&] { readjob(inside("full.job")); }).text.find("line 202"), std::string::npos);
}

TEST_F(sumlists, SumsFromTheDataDirectoryAndComesBack) {
    std::filesystem::create_directory(inside("data"));
    SessionState.dataDirectory = inside("data");
    choose({"missing._01"});
    scripted::expectsave(inside("sum.___"), "Save result file");
    selectoutput(list);
    EXPECT_EQ(kindof([&] { computesum(list); }), errorkind::filenotfound);
    EXPECT_TRUE(canopen(inside("Jobsummer.job"))) << "the job is written before its sum";
    EXPECT_EQ(std::filesystem::current_path().string(), directory.path);
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
}

} // namespace
