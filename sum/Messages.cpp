// SPDX-License-Identifier: MIT
#include "sum/Messages.h"

#include "platform/ByteStream.h"
#include "platform/Status.h"
#include "sum/Output.h"

#include <cstring>

namespace sum {

namespace {

std::string programName = "fyrnsum";

} // namespace

void SetProgramName(std::string_view name) {
    programName = name;
}

const std::string& ProgramName() {
    return programName;
}

void SayAtOnce(std::string_view text) {
    std::string line = programName + ": ";
    line.append(text).append("\n");
    platform::WipeStatus();
    platform::WriteToErrors(line);
}

void Say(std::string_view text) {
    Out().Flush();
    SayAtOnce(text);
}

void SayAdvice() {
    platform::WriteToErrors("Try '" + programName + " --help' for more information.\n");
}

void SayError(const Name& name, int error) {
    Say(Quoted(name) + ": " + ErrorText(error));
}

std::string ErrorText(int error) {
    return std::strerror(error); // English, because no locale is ever set
}

} // namespace sum
