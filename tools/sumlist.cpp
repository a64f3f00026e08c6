// The list of "Sum & Equalize" and the rules of its sliders.
#include "tools/sumlist.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "tools/sumresults.h"

#include <algorithm>
#include <filesystem>

namespace orv {

namespace {

constexpr std::string_view jobending = "JOB";
constexpr const char* plainjob = "Jobsummer.job";
constexpr std::size_t firstgain = 2; // column of the grid

// What the sum stands on, put back at the end.
struct sumplace {
    std::filesystem::path noted = std::filesystem::current_path();

    sumplace() {
        std::filesystem::current_path(SessionState.dataDirectory);
        platform::pointer(platform::shape::wait);
    }
    ~sumplace() {
        platform::pointer(platform::shape::normal);
        std::error_code gone;
        std::filesystem::current_path(noted, gone);
    }
    sumplace(const sumplace&) = delete;
    sumplace& operator=(const sumplace&) = delete;
};

bool isjob(const std::string& path) {
    return path.size() >= jobending.size() &&
           uppercase(path.substr(path.size() - jobending.size())) == jobending;
}

void addjob(sumlist& list, const std::string& path) {
    const sumjob read = readjob(path);
    list.jobname = path;
    list.job.directory = read.directory;
    list.job.output = read.output;
    for (const jobrow& row : read.files) {
        addjobfile(list.job, row.name);
        list.job.files.back() = row;
    }
}

int sliderof(const std::string& cell, int sign, int lowest, int highest) {
    return whole32(
        std::clamp(sign * lenientnumber(cell), static_cast<double>(lowest), static_cast<double>(highest)));
}

std::string& cellof(sumlist& list, std::size_t cell) {
    return list.job.files.at(list.row).cell.at(cell);
}

// Moves one gain slider as far as it goes; its cell follows when it moves.
void slidegain(sumlist& list, std::size_t band, int value) {
    int& slider = list.gainslider[band];
    const int reached = std::clamp(value, -highestgain, highestgain);
    if (reached == slider) return;
    slider = reached;
    cellof(list, band + 1) = numbertext(-reached);
}

} // namespace

std::string bandheading(std::size_t column) {
    if (column < firstgain) return "";
    const std::string band(bandName.at(column - firstgain + 1));
    const double frequency = lenientnumber(band);
    return frequency < 1000 ? band + "Hz" : trimmednumber(frequency / 1000) + "kHz";
}

std::string columnheading(std::size_t column) {
    return column == 0 ? "File Name" : column == 1 ? "delay (ms)" : "G (dB)";
}

std::string listcell(const sumlist& list, std::size_t row, std::size_t column) {
    const jobrow& file = list.job.files.at(row);
    return column == 0 ? pagetext(file.name) : file.cell.at(column - 1);
}

void selectinputs(sumlist& list) {
    untilcancelled([&list] {
        const std::vector<std::string> paths =
            platform::askopenfiles({"Select output files to be summed",
                                    "Orvanta result files (*._*)|*._*|Summation Job file (*.job)|*.job",
                                    "*._*", std::filesystem::current_path().string()});
        sumlist changed = list;
        if (isjob(paths.front())) {
            addjob(changed, paths.front());
        } else {
            changed.job.directory = directoryof(paths.front());
            for (const std::string& path : paths) addjobfile(changed.job, filenameof(path));
        }
        list = changed;
        if (list.row == norow) selectrow(list, 0);
    });
}

void selectoutput(sumlist& list) {
    untilcancelled([&list] {
        const std::string path =
            platform::asksavefile({"Save result file", "Orvanta output file (*.___)|*.___", "*.___",
                                   std::filesystem::current_path().string()});
        list.job.directory = directoryof(path);
        list.job.output = filenameof(path);
    });
}

void selectrow(sumlist& list, std::size_t row) {
    if (row >= list.job.files.size()) return;
    list.row = row;
    list.delayslider = sliderof(cellof(list, 0), 1, 0, highestdelay);
    for (std::size_t band = 0; band < octavebands; ++band)
        list.gainslider[band] = sliderof(cellof(list, band + 1), -1, -highestgain, highestgain);
}

void movegain(sumlist& list, std::size_t band, int value) {
    if (list.row == norow || band >= octavebands) return;
    const int step = value - list.gainslider[band];
    slidegain(list, band, value);
    for (std::size_t other = 0; list.ganged && other < octavebands; ++other)
        if (other != band) slidegain(list, other, list.gainslider[other] + step);
}

void movedelay(sumlist& list, int value) {
    if (list.row == norow) return;
    list.delayslider = std::clamp(value, 0, highestdelay);
    cellof(list, 0) = numbertext(list.delayslider);
}

void computesum(const sumlist& list) {
    const sumplace place;
    const std::string name = list.jobname.empty() ? (place.noted / plainjob).string() : list.jobname;
    writejob(name, list.job);
    sumresults(name);
}

void SumEq() {
    platform::showwindow("Sum & Equalize", true);
}

} // namespace orv
