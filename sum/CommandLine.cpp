// SPDX-License-Identifier: MIT
#include "sum/CommandLine.h"

#include "platform/Processors.h"
#include "sum/Arguments.h"
#include "sum/FunctionRequest.h"
#include "sum/Messages.h"
#include "sum/PathRules.h"

#include <charconv>

namespace sum {

namespace {

// Reads the options one by one, and then looks at them together.
class Reader {
  public:
    Reader(const Tool& tool, std::span<const std::string> arguments)
        : tool_(tool), arguments_(tool, arguments), request_(tool) {
        options_.jobs = platform::UsableProcessors();
    }

    Options Read();

  private:
    void Take(const GivenOption& given);
    void TakeForm(const std::string& name);
    void TakeJobs(const std::string& text);
    void TakeList(const GivenOption& given);
    void TakeAcceptance(const std::string& what);
    void CheckTogether() const;
    void CheckCheckOptions() const;
    void CheckTreeOptions() const;
    void CheckPrintOptions() const;
    void CheckThatTreeOptionsAreOfUse() const;
    void CheckForms() const;
    void ChooseFunctions();
    void ChooseForm();
    void ChooseOperands();

    const Tool& tool_;
    Arguments arguments_;
    FunctionRequest request_;
    Options options_;
    std::optional<Form> form_;
    std::optional<bool> binary_; // of --binary and --text the last; --tag is binary too
    bool base64_ = false;
    bool raw_ = false;
};

[[noreturn]] void FailMeaningless(const std::string& what, bool forCheck) {
    throw UsageError("the " + what + " option is " +
                     (forCheck ? "meaningless when" : "meaningful only when") + " verifying checksums");
}

[[noreturn]] void FailUnsupported(const std::string& what) {
    throw UsageError("the " + what + " option is not supported when verifying checksums");
}

} // namespace

void Reader::TakeForm(const std::string& name) {
    constexpr std::pair<std::string_view, Form> forms[] = {{"gnu", Form::untagged},
                                                           {"bsd", Form::tagged},
                                                           {"sfv", Form::sfv},
                                                           {"hashdeep", Form::hashdeep},
                                                           {"bagit", Form::bagit}};
    for (const auto& [known, form] : forms) {
        if (known == name) {
            form_ = form;
            return;
        }
    }
    std::string message = "invalid argument " + QuotedPlain(name) + " for '--format'\nValid arguments are:";
    for (const auto& [known, form] : forms)
        message += "\n  - '" + std::string(known) + "'";
    throw UsageError(message);
}

void Reader::TakeJobs(const std::string& text) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, options_.jobs);
    if (error != std::errc() || stop != end || options_.jobs == 0)
        throw UsageError("invalid number of jobs: " + QuotedPlain(text), UsageError::Advice::none);
}

void Reader::TakeList(const GivenOption& given) {
    const bool update = given.id == OptionId::update;
    if (options_.list && options_.update != update)
        throw UsageError("--audit and --update are mutually exclusive");
    options_.list = given.argument;
    options_.update = update;
}

void Reader::TakeAcceptance(const std::string& what) {
    if (!what.empty() && what != "all")
        throw UsageError("invalid argument " + QuotedPlain(what) +
                         " for '--accept-changes'\nValid arguments are:\n  - 'all'");
    options_.acceptance = what.empty() ? Acceptance::changed : Acceptance::all;
}

void Reader::Take(const GivenOption& given) {
    CheckOptions& checking = options_.checking;
    switch (given.id) {
    case OptionId::algorithm:
        return request_.Add(given.argument);
    case OptionId::length:
        return request_.SetLength(given.argument);
    case OptionId::bsd:
        return request_.Add("bsd");
    case OptionId::sysv:
        return request_.Add("sysv");
    case OptionId::binary:
        binary_ = true;
        return;
    case OptionId::text:
        binary_ = false;
        return;
    case OptionId::tag:
        form_ = Form::tagged;
        binary_ = true;
        return;
    case OptionId::untagged:
        if (form_ == Form::tagged) // which --tag alone made binary
            binary_.reset();
        form_ = Form::untagged;
        return;
    case OptionId::json:
        form_ = Form::json;
        return;
    case OptionId::format:
        return TakeForm(given.argument);
    case OptionId::base64:
        base64_ = true;
        return;
    case OptionId::raw:
        raw_ = true;
        return;
    case OptionId::zero:
        options_.zero = true;
        return;
    case OptionId::check:
        options_.check = true;
        checking.gnuOnly = tool_.kind != ToolKind::fyrnsum;
        return;
    case OptionId::audit:
    case OptionId::update:
        return TakeList(given);
    case OptionId::acceptChanges:
        return TakeAcceptance(given.argument);
    case OptionId::resume:
        options_.resume = true;
        return;
    case OptionId::quick:
        options_.quick = true;
        return;
    case OptionId::verbose:
        options_.verbose = true;
        return;
    case OptionId::directory:
        options_.directory = given.argument;
        return;
    case OptionId::baseName:
        options_.baseName = true;
        return;
    case OptionId::ignoreMissing:
        checking.ignoreMissing = true;
        return;
    case OptionId::strict:
        checking.strict = true;
        return;
    case OptionId::quiet: // of these three the last counts
    case OptionId::status:
    case OptionId::warn:
        checking.quiet = given.id == OptionId::quiet;
        checking.status = given.id == OptionId::status;
        checking.warn = given.id == OptionId::warn;
        return;
    case OptionId::recursive:
        options_.recursive = true;
        return;
    case OptionId::follow:
        options_.follow = true;
        return;
    case OptionId::oneFileSystem:
        options_.oneFileSystem = true;
        return;
    case OptionId::exclude:
        options_.rules.push_back({given.argument, false});
        return;
    case OptionId::include:
        options_.rules.push_back({given.argument, true});
        return;
    case OptionId::excludeFrom:
        return AppendExclusions(given.argument, options_.rules);
    case OptionId::filesFrom:
    case OptionId::files0From:
        options_.namesFrom = given.argument;
        options_.namesEndInNul = given.id == OptionId::files0From;
        return;
    case OptionId::output:
        options_.output = given.argument;
        return;
    case OptionId::jobs:
        return TakeJobs(given.argument);
    case OptionId::progress:
        options_.progress = Watch::always;
        return;
    case OptionId::noProgress:
        options_.progress = Watch::never;
        return;
    case OptionId::debug:
        options_.debug = true;
        return;
    case OptionId::help:
        throw Instead{Instead::Page::help};
    case OptionId::version:
        throw Instead{Instead::Page::version};
    case OptionId::listFunctions:
        throw Instead{Instead::Page::functions};
    }
}

// In the order in which GNU's tools look at them, so that of several mistakes the same one is told.
void Reader::CheckTogether() const {
    if (form_ == Form::tagged && binary_ == false)
        throw UsageError("--tag does not support --text mode");
    if (tool_.kind == ToolKind::cksum && !form_ && binary_ == false)
        throw UsageError("--text mode is only supported with --untagged");
    CheckThatTreeOptionsAreOfUse();
    if (options_.check)
        CheckCheckOptions();
    else if (options_.list)
        CheckTreeOptions();
    else
        CheckPrintOptions();
}

void Reader::CheckCheckOptions() const {
    if (options_.zero)
        FailUnsupported("--zero");
    if (raw_)
        FailUnsupported("--raw");
    if (options_.output)
        FailUnsupported("--output");
    if (options_.namesFrom)
        FailUnsupported(options_.namesEndInNul ? "--files0-from" : "--files-from");
    if (form_ == Form::tagged && tool_.kind != ToolKind::cksum)
        FailMeaningless("--tag", true);
    if (binary_ && tool_.kind != ToolKind::cksum)
        throw UsageError("the --binary and --text options are meaningless when verifying checksums");
    if (options_.recursive)
        FailMeaningless("--recursive", true);
    if (!options_.rules.empty())
        throw UsageError("the --exclude and --include options are meaningless when verifying checksums");
}

void Reader::CheckThatTreeOptionsAreOfUse() const {
    if (options_.check && options_.list)
        throw UsageError(std::string("--check and ") + (options_.update ? "--update" : "--audit") +
                         " are mutually exclusive");
    if (options_.acceptance != Acceptance::none && !options_.update)
        throw UsageError("the --accept-changes option is meaningful only with --update");
    if (options_.resume && (!options_.output || options_.list))
        throw UsageError("the --resume option is meaningful only with --output, when printing");
    if (options_.quick && !options_.list)
        throw UsageError("the --quick option is meaningful only with --audit and --update");
    if (options_.verbose && !options_.list)
        throw UsageError("the --verbose option is meaningful only with --audit and --update");
}

// The list tells the form of its lines, and the operands the tree.
void Reader::CheckTreeOptions() const {
    const CheckOptions& checking = options_.checking;
    const std::pair<bool, const char*> ofNoUse[] = {{checking.ignoreMissing, "--ignore-missing"},
                                                    {options_.baseName, "--basename"},
                                                    {base64_, "--base64"},
                                                    {raw_, "--raw"},
                                                    {options_.zero, "--zero"},
                                                    {binary_ && form_ != Form::tagged, "--binary"},
                                                    {options_.namesFrom.has_value(), "--files-from"}};
    const char* const purpose = options_.update ? " updating a list" : " auditing a tree";
    for (const auto& [given, name] : ofNoUse)
        if (given)
            throw UsageError(std::string("the ") + name + " option is meaningless when" + purpose);
    if (form_ && form_ != Form::json)
        throw UsageError(std::string("the form of lines is that of the list when") + purpose);
    if (options_.update && *options_.list == "-")
        throw UsageError("standard input cannot be updated");
    if (HasOneOutputForEach(options_))
        throw UsageError(std::string("there is one --output only when") + purpose);
}

void Reader::CheckPrintOptions() const {
    const CheckOptions& checking = options_.checking;
    const std::pair<bool, const char*> onlyForChecks[] = {{checking.ignoreMissing, "--ignore-missing"},
                                                          {checking.status, "--status"},
                                                          {checking.warn, "--warn"},
                                                          {checking.quiet, "--quiet"},
                                                          {checking.strict, "--strict"},
                                                          {options_.directory.has_value(), "--directory"},
                                                          {options_.baseName, "--basename"}};
    for (const auto& [given, name] : onlyForChecks)
        if (given)
            FailMeaningless(name, false);
    if (base64_ && raw_)
        throw UsageError("--base64 and --raw are mutually exclusive");
    CheckForms();
}

// What the forms of other programs cannot hold.
void Reader::CheckForms() const {
    const Form form = form_.value_or(Form::untagged);
    if (form == Form::untagged || form == Form::tagged || form == Form::json)
        return;
    if (base64_ || raw_)
        throw UsageError("this --format has digests in hexadecimal only");
    if (options_.zero)
        throw UsageError("this --format has lines that end in a line feed only");
}

void Reader::ChooseFunctions() {
    options_.functionsGiven =
        request_.IsGiven() || tool_.kind == ToolKind::digest || tool_.kind == ToolKind::blake2;
    if (form_ == Form::sfv && !request_.IsGiven())
        request_.Add("crc32");
    if (form_ == Form::hashdeep && !request_.IsGiven())
        request_.Add("md5,sha256");
    options_.functions = request_.Resolve(options_.check || options_.list);
    const std::vector<FunctionChoice>& functions = options_.functions;
    if (options_.check && tool_.kind == ToolKind::cksum && request_.IsGiven() &&
        functions[0].legacy != Legacy::none)
        throw UsageError("--check is not supported with --algorithm={bsd,sysv,crc}",
                         UsageError::Advice::none);
    if (form_ == Form::sfv && (functions.size() != 1 || functions[0].name != "crc32"))
        throw UsageError("--format=sfv is for --algorithm=crc32 only");
}

// One function's lines are untagged, and those of several that stand together tagged, when nothing
// was said.
void Reader::ChooseForm() {
    const bool together = options_.functions.size() > 1 && !HasOneOutputForEach(options_);
    const Form usual = tool_.kind == ToolKind::cksum || together ? Form::tagged : Form::untagged;
    options_.form = form_.value_or(usual);
    options_.star = binary_ == true && options_.form == Form::untagged && form_ != Form::tagged;
    options_.encoding = raw_ ? Encoding::raw : base64_ ? Encoding::base64 : Encoding::hex;
    if (raw_ && options_.functions.size() > 1)
        throw UsageError("the --raw option is not supported with multiple functions");
}

void Reader::ChooseOperands() {
    options_.operands = arguments_.Operands();
    if (options_.namesFrom && !options_.operands.empty()) {
        Say("extra operand " + QuotedPlain(options_.operands[0]));
        throw UsageError(std::string("file operands cannot be combined with ") +
                         (options_.namesEndInNul ? "--files0-from" : "--files-from"));
    }
    if (raw_ && (options_.operands.size() > 1 || options_.namesFrom || options_.recursive))
        throw UsageError("the --raw option is not supported with multiple files", UsageError::Advice::none);
    options_.namesGiven = !options_.operands.empty();
    if (!options_.namesGiven && !options_.namesFrom)
        options_.operands = {options_.list ? "." : "-"};
}

Options Reader::Read() {
    while (const auto given = arguments_.Next())
        Take(*given);
    // The functions first, because so do GNU's tools; but the form is needed for that.
    ChooseFunctions();
    CheckTogether();
    ChooseForm();
    ChooseOperands();
    return std::move(options_);
}

Options ReadCommandLine(const Tool& tool, std::span<const std::string> arguments) {
    return Reader(tool, arguments).Read();
}

bool HasOneOutputForEach(const Options& options) {
    return options.output && options.output->find(functionPlace) != Name::npos;
}

} // namespace sum
