#include "StepScanner.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <array>

namespace VX
{

namespace
{

constexpr std::string_view magic = "ISO-10303-21";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Characters at which the search for the end of a statement has to stop.
constexpr std::array<bool, 256> makeStops()
{
    std::array<bool, 256> stops{};
    for (const unsigned char c : {'\'', ';', '/'})
        stops[c] = true;
    return stops;
}

constexpr std::array<bool, 256> stops = makeStops();

/// Hands out the statements of a text, one after the other.
class StatementReader
{
public:
    explicit StatementReader(std::string_view text)
        : text_(text)
    {
    }

    /// The text up to before the next semicolon outside strings and comments; nothing where there is none.
    std::optional<std::string_view> next()
    {
        const std::size_t begin = position_;
        std::size_t at = begin;
        while (true)
        {
            while (at < text_.size() && !stops[static_cast<unsigned char>(text_[at])])
                ++at;
            if (at >= text_.size())
                return std::nullopt;
            if (text_[at] == ';')
            {
                position_ = at + 1;
                return text_.substr(begin, at - begin);
            }
            if (text_[at] == '\'')
                at = skipStepString(text_, at);
            else if (text_.substr(at, 2) == "/*")
                at = skipStepComment(text_, at);
            else
                ++at;
        }
    }

private:
    std::string_view text_;
    std::size_t position_ = 0;
};

/// The first token of a statement: what section begins or ends.
std::string_view firstWord(std::string_view statement)
{
    const StepToken token = StepTokenizer(statement).next();
    return token.kind == StepTokenKind::Keyword ? token.text : std::string_view();
}

/// Reads `#id=text`; a statement that is none gives an instance without text.
StepInstance parseInstance(std::string_view statement)
{
    StepTokenizer tokens(statement);
    const StepToken reference = tokens.next();
    if (reference.kind != StepTokenKind::Reference || tokens.next().kind != StepTokenKind::Equals)
        return {};
    const std::optional<StepId> id = parseStepId(reference.text);
    const StepToken first = tokens.next();
    if (!id)
        return {};
    if (first.kind == StepTokenKind::Keyword)
        return {*id, stepType(first.text),
                statement.substr(static_cast<std::size_t>(first.text.data() - statement.data()))};
    if (first.kind == StepTokenKind::Open)
        return {*id, complexStepType, statement.substr(tokens.position() - 1)};
    return {};
}

std::vector<StepInstance> parseInstances(const std::vector<std::string_view>& statements)
{
    constexpr std::size_t grain = 4096;
    std::vector<StepInstance> instances(statements.size());
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, statements.size(), grain),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t k = range.begin(); k < range.end(); ++k)
                              instances[k] = parseInstance(statements[k]);
                      });
    std::erase_if(instances, [](const StepInstance& instance) { return instance.text.empty(); });
    return instances;
}

tl::unexpected<std::string> failure(const char* text)
{
    return tl::unexpected<std::string>(text);
}

struct Sections
{
    std::vector<std::string_view> data; ///< statements of all data sections
    bool hasData = false;
    bool isComplete = false; ///< no section is open at the end
};

/// Adds the statements up to ENDSEC. @return false when the text ends before
bool readData(StatementReader& statements, Sections& sections)
{
    while (const std::optional<std::string_view> statement = statements.next())
    {
        if (firstWord(*statement) == "ENDSEC")
            return true;
        sections.data.push_back(*statement);
    }
    return false;
}

/// Passes over everything up to ENDSEC.
void skipSection(StatementReader& statements)
{
    while (const std::optional<std::string_view> statement = statements.next())
        if (firstWord(*statement) == "ENDSEC")
            return;
}

Sections readSections(std::string_view text)
{
    Sections sections;
    sections.data.reserve(text.size() / 64);
    StatementReader statements(text);
    while (const std::optional<std::string_view> statement = statements.next())
    {
        const std::string_view word = firstWord(*statement);
        if (word == "DATA")
        {
            sections.hasData = true;
            sections.isComplete = readData(statements, sections);
        }
        else if (word == "HEADER" || word == "ANCHOR" || word == "REFERENCE" || word == "SIGNATURE")
            skipSection(statements);
        else if (word.starts_with("END-ISO"))
            break;
    }
    return sections;
}

} // namespace

tl::expected<StepFile, std::string> scanStepFile(std::string_view text)
{
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    if (std::ranges::all_of(text, isStepBlank))
        return failure("The file is empty.");
    if (!firstWord(text.substr(0, 65536)).starts_with(magic))
        return failure("The file is not a STEP file: it does not begin with ISO-10303-21.");

    const Sections sections = readSections(text);
    if (!sections.hasData)
        return failure("The STEP file is cut off: it ends before its data. Save or download it again.");
    if (!sections.isComplete)
        return failure("The STEP file is cut off or damaged: its data has no end. Save or download it again.");
    if (sections.data.size() >= noStepInstance)
        return failure("The STEP file has more than four billion entities.");
    std::vector<StepInstance> instances = parseInstances(sections.data);
    if (instances.empty())
        return failure("The STEP file holds no data.");
    return StepFile(std::move(instances));
}

} // namespace VX
