// SPDX-License-Identifier: MIT
#include "sum/Run.h"

#include "sum/Check.h"
#include "sum/CommandLine.h"
#include "sum/Help.h"
#include "sum/Messages.h"
#include "sum/Output.h"
#include "sum/Print.h"
#include "sum/Tree.h"
#include "sum/TreeError.h"

#include <algorithm>
#include <new>

namespace sum {

namespace {

constexpr int failure = 1;

std::string PageText(Instead::Page page, const Tool& tool) {
    if (page == Instead::Page::help)
        return HelpText(tool);
    return page == Instead::Page::version ? VersionText(tool) : FunctionList();
}

// Whatever goes wrong is no difference.
int Compare(const Options& options) {
    try {
        return CompareTree(options);
    } catch (const TreeError& error) {
        Say(error.what());
    } catch (const OutputError& error) {
        SayAtOnce(error.what());
    } catch (const std::bad_alloc&) {
        SayAtOnce("memory exhausted");
    }
    return treeTrouble;
}

int RunWith(const Options& options) {
    if (options.debug)
        Say(DebugText(options));
    const int status = options.list ? Compare(options) : options.check ? Check(options) : Print(options);
    Out().Flush();
    return status;
}

// Whether the command line asks for a comparison, even if it makes no sense. No other long options
// begin so.
bool AsksForComparison(std::span<const std::string> arguments) {
    return std::ranges::any_of(arguments, [](const std::string& argument) {
        return argument.starts_with("--au") || argument.starts_with("--up");
    });
}

int Fail(const UsageError& error, std::span<const std::string> arguments) {
    if (*error.what() != '\0')
        Say(error.what());
    if (error.GivesAdvice())
        SayAdvice();
    return AsksForComparison(arguments) ? treeTrouble : failure;
}

int RunAs(const Tool& tool, std::span<const std::string> arguments) {
    try {
        return RunWith(ReadCommandLine(tool, arguments));
    } catch (const Instead& instead) {
        Out().Write(PageText(instead.page, tool));
        Out().Flush();
        return 0;
    } catch (const UsageError& error) {
        return Fail(error, arguments);
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
