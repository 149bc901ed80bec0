// SPDX-License-Identifier: MIT
#include "sum/Run.h"

#include "sum/Check.h"
#include "sum/CommandLine.h"
#include "sum/Help.h"
#include "sum/Messages.h"
#include "sum/Output.h"
#include "sum/Print.h"

#include <new>

namespace sum {

namespace {

constexpr int failure = 1;

std::string PageText(Instead::Page page, const Tool& tool) {
    if (page == Instead::Page::help)
        return HelpText(tool);
    return page == Instead::Page::version ? VersionText(tool) : FunctionList();
}

int RunWith(const Options& options) {
    if (options.debug)
        Say(DebugText(options));
    const int status = options.check ? Check(options) : Print(options);
    Out().Flush();
    return status;
}

int Fail(const UsageError& error) {
    if (*error.what() != '\0')
        Say(error.what());
    if (error.GivesAdvice())
        SayAdvice();
    return failure;
}

int RunAs(const Tool& tool, std::span<const std::string> arguments) {
    try {
        return RunWith(ReadCommandLine(tool, arguments));
    } catch (const Instead& instead) {
        Out().Write(PageText(instead.page, tool));
        Out().Flush();
        return 0;
    } catch (const UsageError& error) {
        return Fail(error);
    }
}

} // namespace

int Run(std::span<const std::string> arguments) {
    const Tool& tool = ToolCalled(arguments.empty() ? "" : arguments[0]);
    SetProgramName(tool.name);
    try {
        return RunAs(tool, arguments.empty() ? arguments : arguments.subspan(1));
    } catch (const OutputError& error) {
        SayAtOnce(error.what());
    } catch (const std::bad_alloc&) {
        SayAtOnce("memory exhausted");
    }
    return failure;
}

} // namespace sum
