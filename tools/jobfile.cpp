// The job file. Text, in the files' code page (names as storedname has them); CR LF or LF:
//
//   "C:\halls\mine"                 directory of the inputs and of the output
//   "both.___"                      name of the output
//   "hall._01", 20,0, 3,...         a line for each input: its name, its delay in ms, and the gains in dB of
//   hall._02,0,0,0,...              the ten bands from 31.5 Hz to 16 kHz
//
// Names are quoted or plain; a plain one ends at a comma or line end. Commas and line ends end a field,
// blanks in front of one are skipped.
#include "tools/jobfile.h"

#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"

namespace orv {

namespace {

std::string_view readname(listreader& file) {
    return trimboth(readtext(file, listreader::commaends));
}

// A name as it is written. It stands in quotes, so that it cannot hold one.
std::string writtenname(const std::string& name) {
    if (name.find('"') != std::string::npos)
        throw runtimeerror{errorkind::domain, "A job file cannot hold the name " + pagetext(name) +
                                                  ", which has a quotation mark in it."};
    return storedname(name);
}

} // namespace

void addjobfile(sumjob& job, const std::string& name) {
    if (job.files.size() >= highestinput)
        throw runtimeerror{errorkind::subscript,
                           "A sum has at most " + std::to_string(highestinput) + " input files."};
    jobrow row{name, {}};
    row.cell.fill("0");
    job.files.push_back(row);
}

sumjob readjob(const std::string& path) {
    const filebytes bytes = readfile(path);
    listreader file = openlist(bytes, pagetext(path));
    sumjob job;
    job.directory = namestored(readname(file), "");
    job.output = namestored(readname(file));
    const std::string directory = existingpath(job.directory);
    while (!nothingleft(file)) {
        if (job.files.size() >= highestinput)
            inputfailure(file, errorkind::subscript,
                         "a sum has at most " + std::to_string(highestinput) + " input files");
        addjobfile(job, namestored(readname(file), directory));
        for (std::string& cell : job.files.back().cell) cell = numbertext(readnumber(file));
    }
    return job;
}

void writejob(const std::string& path, const sumjob& job) {
    std::string text;
    for (const std::string& name : {job.directory, job.output})
        text.append(1, '"').append(writtenname(name)).append(1, '"').append(lineend);
    for (const jobrow& row : job.files) {
        std::string line;
        listtext(line, writtenname(row.name));
        for (const std::string& cell : row.cell) line.append(1, ',').append(cell);
        text.append(line).append(lineend);
    }
    replacefile(path, text);
}

} // namespace orv
