#include "StepGrammar.h"

namespace VX
{

namespace
{

/// More than any schema nests; a reader's stack is limited.
constexpr int maxNesting = 32;
/// Stands for references beyond 64 bits: no file has as many instances.
constexpr StepId noReference = ~StepId{0};

/// Checks the grammar token by token.
class InstanceChecker
{
public:
    InstanceChecker(std::string_view text, std::vector<StepId>* references)
        : tokens_(text)
        , references_(references)
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

    /// Takes a value, and notes what it refers to.
    bool takeValue_(const StepToken& token)
    {
        switch (token.kind)
        {
        case StepTokenKind::Number:
            return parseStepNumber(token.text).has_value();
        case StepTokenKind::Reference:
            if (references_)
                references_->push_back(parseStepId(token.text).value_or(noReference));
            return true;
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
                if (!takeValue_(token))
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
    std::vector<StepId>* references_;
};

} // namespace

bool isWellFormedStepInstance(std::string_view text, std::vector<StepId>* references)
{
    return InstanceChecker(text, references).check();
}

} // namespace VX
