#include "StepExcerpt.h"

#include "StepGeometryTypes.h"
#include "StepGrammar.h"
#include "StepSoundness.h"

#include <vector>

namespace VX
{

namespace
{

class ExcerptWriter
{
public:
    explicit ExcerptWriter(const StepFile& file)
        : file_(file)
        , soundness_(file)
    {
    }

    StepExcerpt write(std::span<const StepItem> items)
    {
        excerpt_.text = "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
                        "FILE_NAME('','',(''),(''),'','','');\nFILE_SCHEMA(('AUTOMOTIVE_DESIGN'));\nENDSEC;\nDATA;\n";
        // Contexts come first and with their labels, by which the library tells uncertainties apart.
        for (const StepItem& item : items)
            numberOf_(contextOf_(item));
        writeOpen_();
        isContext_ = false;
        bool isEmpty = true;
        for (const StepItem& item : items)
        {
            const int number = numberOf_(item.item);
            isEmpty = isEmpty && number == 0;
            excerpt_.items.push_back(
                {number == 0 ? 0 : writeRepresentation_(number, numberOf_(contextOf_(item))), number});
        }
        writeOpen_();
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
        if (isNew && canWrite_(index))
        {
            found->second = ++excerpt_.size;
            open_.push_back(index);
        }
        return found->second;
    }

    /// A context without one of its parts still tells the units.
    [[nodiscard]] bool canWrite_(StepIndex index)
    {
        return isContext_ ? isWellFormedStepInstance(file_[index].text) : soundness_.isSound(index);
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
    void writeOpen_()
    {
        while (!open_.empty())
        {
            const StepIndex index = open_.back();
            open_.pop_back();
            excerpt_.text += '#' + std::to_string(excerpt_.numbers.at(index)) + '=';
            if (!isContext_ && StepSoundness::isSet(file_.type(index)))
                writeSet_(index);
            else
                writeInstance_(file_[index].text);
            excerpt_.text += ";\n";
        }
    }

    /// Writes a set of geometry with those of its members that are sound.
    void writeSet_(StepIndex index)
    {
        StepTokenizer tokens(file_[index].text);
        excerpt_.text += tokens.next().text;
        excerpt_.text += "('',(";
        const char* separator = "";
        const std::vector<StepIndex> members = file_.references(file_[index].text);
        for (std::size_t k = 0; k < members.size(); ++k)
        {
            const bool isUsable = mayReferTo(file_.type(index), k, members.size(), file_.type(members[k]));
            const int number = isUsable ? numberOf_(members[k]) : 0;
            if (number == 0)
                continue;
            excerpt_.text += separator;
            appendReference_(number);
            separator = ",";
        }
        excerpt_.text += "))";
    }

    void writeInstance_(std::string_view text)
    {
        StepTokenizer tokens(text);
        for (StepToken token = tokens.next(); token.kind != StepTokenKind::End; token = tokens.next())
            switch (token.kind)
            {
            case StepTokenKind::Reference:
                appendReference_(numberOf_(find_(token.text)));
                break;
            case StepTokenKind::String:
                appendQuoted_('\'', isContext_ ? token.text : std::string_view());
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
    StepSoundness soundness_;
    bool isContext_ = true;       ///< contexts are being written, not yet geometry
    std::vector<StepIndex> open_; ///< instances with a number that are not written yet
    StepExcerpt excerpt_;
};

} // namespace

StepExcerpt makeStepExcerpt(const StepFile& file, std::span<const StepItem> items)
{
    return ExcerptWriter(file).write(items);
}

} // namespace VX
