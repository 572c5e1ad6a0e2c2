#include "StepExcerpt.h"

#include <vector>

namespace VX
{

namespace
{

/// More than any schema nests; a reader's stack is limited.
constexpr int maxNesting = 32;

/// Checks the grammar token by token.
class InstanceChecker
{
public:
    explicit InstanceChecker(std::string_view text)
        : tokens_(text)
    {
    }

    bool check()
    {
        StepToken token = tokens_.next();
        if (token.kind == StepTokenKind::Keyword)
            return isKeyword_(token) && tokens_.next().kind == StepTokenKind::Open && list_() && atEnd_();
        if (token.kind != StepTokenKind::Open)
            return false;
        StepTokenizer ahead({});
        do
        {
            token = tokens_.next();
            if (token.kind != StepTokenKind::Keyword || !isKeyword_(token) ||
                tokens_.next().kind != StepTokenKind::Open || !list_())
                return false;
            ahead = tokens_;
        } while (ahead.next().kind == StepTokenKind::Keyword);
        return tokens_.next().kind == StepTokenKind::Close && atEnd_();
    }

private:
    /// Keywords that a program defined for itself begin with "!" and mean nothing to others.
    static bool isKeyword_(const StepToken& token) { return !token.text.starts_with('!'); }

    bool atEnd_() { return tokens_.next().kind == StepTokenKind::End; }

    static bool isValue_(const StepToken& token)
    {
        switch (token.kind)
        {
        case StepTokenKind::Number:
            return parseStepNumber(token.text).has_value();
        case StepTokenKind::Reference:
        case StepTokenKind::String:
        case StepTokenKind::Enumeration:
        case StepTokenKind::Binary:
        case StepTokenKind::Unset:
        case StepTokenKind::Derived:
            return true;
        default:
            return false;
        }
    }

    /// What follows an opening parenthesis up to the one that closes it.
    bool list_()
    {
        int depth = 1;
        bool isFirst = true;
        StepToken token = tokens_.next();
        while (true)
        {
            // Here stands a value, or the end of a list without any.
            if (isFirst && token.kind == StepTokenKind::Close)
                --depth;
            else
            {
                if (token.kind == StepTokenKind::Keyword && isKeyword_(token))
                {
                    token = tokens_.next();
                    if (token.kind != StepTokenKind::Open)
                        return false;
                }
                if (token.kind == StepTokenKind::Open)
                {
                    if (++depth > maxNesting)
                        return false;
                    isFirst = true;
                    token = tokens_.next();
                    continue;
                }
                if (!isValue_(token))
                    return false;
            }
            // And here a comma or the ends of lists.
            if (depth > 0)
                token = tokens_.next();
            while (depth > 0 && token.kind == StepTokenKind::Close)
                if (--depth > 0)
                    token = tokens_.next();
            if (depth == 0)
                return true;
            if (token.kind != StepTokenKind::Comma)
                return false;
            isFirst = false;
            token = tokens_.next();
        }
    }

    StepTokenizer tokens_;
};

class ExcerptWriter
{
public:
    explicit ExcerptWriter(const StepFile& file)
        : file_(file)
    {
    }

    StepExcerpt write(std::span<const StepItem> items)
    {
        excerpt_.text = "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
                        "FILE_NAME('','',(''),(''),'','','');\nFILE_SCHEMA(('AUTOMOTIVE_DESIGN'));\nENDSEC;\nDATA;\n";
        // Contexts come first and with their labels, by which the library tells uncertainties apart.
        for (const StepItem& item : items)
            numberOf_(contextOf_(item));
        writeOpen_(true);
        bool isEmpty = true;
        for (const StepItem& item : items)
        {
            const int number = numberOf_(item.item);
            isEmpty = isEmpty && number == 0;
            excerpt_.items.push_back(
                {number == 0 ? 0 : writeRepresentation_(number, numberOf_(contextOf_(item))), number});
        }
        writeOpen_(false);
        excerpt_.text += "ENDSEC;\nEND-ISO-10303-21;\n";
        if (isEmpty)
            excerpt_.text.clear();
        return std::move(excerpt_);
    }

private:
    [[nodiscard]] StepIndex contextOf_(const StepItem& item) const
    {
        const bool isContext = file_.is(item.context, "GLOBAL_UNIT_ASSIGNED_CONTEXT"_step);
        return isContext ? item.context : noStepInstance;
    }

    /// The number of an instance in the excerpt, a new one where it is asked for first; 0 for what cannot be written.
    int numberOf_(StepIndex index)
    {
        if (index == noStepInstance)
            return 0;
        const auto [found, isNew] = excerpt_.numbers.try_emplace(index, 0);
        if (isNew && isWellFormedStepInstance(file_[index].text))
        {
            found->second = ++excerpt_.size;
            open_.push_back(index);
        }
        return found->second;
    }

    int writeRepresentation_(int item, int context)
    {
        const int number = ++excerpt_.size;
        excerpt_.text += '#' + std::to_string(number) + "=SHAPE_REPRESENTATION('',(#" + std::to_string(item) + "),";
        appendReference_(context);
        excerpt_.text += ");\n";
        return number;
    }

    /// Writes the instances that have a number but are not written, and those that they refer to.
    void writeOpen_(bool withLabels)
    {
        while (!open_.empty())
        {
            const StepIndex index = open_.back();
            open_.pop_back();
            writeInstance_(excerpt_.numbers.at(index), file_[index].text, withLabels);
        }
    }

    void writeInstance_(int number, std::string_view text, bool withLabels)
    {
        excerpt_.text += '#' + std::to_string(number) + '=';
        StepTokenizer tokens(text);
        for (StepToken token = tokens.next(); token.kind != StepTokenKind::End; token = tokens.next())
            switch (token.kind)
            {
            case StepTokenKind::Reference:
                appendReference_(numberOf_(find_(token.text)));
                break;
            case StepTokenKind::String:
                appendQuoted_('\'', withLabels ? token.text : std::string_view());
                break;
            case StepTokenKind::Enumeration:
                appendQuoted_('.', token.text);
                break;
            case StepTokenKind::Binary:
                appendQuoted_('"', token.text);
                break;
            default:
                excerpt_.text += token.text;
            }
        excerpt_.text += ";\n";
    }

    [[nodiscard]] StepIndex find_(std::string_view digits) const
    {
        const std::optional<StepId> id = parseStepId(digits);
        return id ? file_.find(*id) : noStepInstance;
    }

    void appendReference_(int number)
    {
        if (number == 0)
            excerpt_.text += '$';
        else
            excerpt_.text += '#' + std::to_string(number);
    }

    void appendQuoted_(char quote, std::string_view text)
    {
        excerpt_.text += quote;
        excerpt_.text += text;
        excerpt_.text += quote;
    }

    const StepFile& file_;
    std::vector<StepIndex> open_; ///< instances with a number that are not written yet
    StepExcerpt excerpt_;
};

} // namespace

bool isWellFormedStepInstance(std::string_view text)
{
    return InstanceChecker(text).check();
}

StepExcerpt makeStepExcerpt(const StepFile& file, std::span<const StepItem> items)
{
    return ExcerptWriter(file).write(items);
}

} // namespace VX
