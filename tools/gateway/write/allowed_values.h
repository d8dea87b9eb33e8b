#pragma once

#include "gateway/config/gateway_config.h"

#include "host/address/assignment.h"
#include "host/tag/tag_set.h"
#include "host/text/finding.h"

#include <functional>
#include <optional>

namespace cnet::gateway {

/** What a request would do to the PLC. */
struct PlannedWrite
{
    Tag tag; ///< one value
    Scalar wanted;
    QVector<Assignment> assignments;
};

/** The values of a line that may be written from outside, and what they may become. */
class AllowedValues
{
public:
    /** Whether the PLC has an address and takes a write there. */
    using Check = std::function<bool(const Item &item, QString &error)>;

    AllowedValues(const QVector<AllowRule> &rules, const TagSet &tags,
                  const RegisterCatalog &registers, int blockWords, Check check);

    /**
     * Checks all of a request but when it comes.
     * @param name of a tag, or of one value of an array
     * @param text the value, in the tag's unit
     * @param error receives why not, in one sentence
     */
    std::optional<PlannedWrite> plan(const QString &name, const QString &text,
                                     QString &error) const;

private:
    QVector<AllowRule> rulesFor(const Tag &value) const;

    QVector<AllowRule> m_rules;
    TagSet m_tags;
    RegisterCatalog m_registers;
    int m_words;
    Check m_check;
};

/** Says which rules fit no tag, or none that can be written, or have bounds for what is no number.
 * @param title what findings call the rules: "writes.press.allow" */
void checkRules(const QVector<AllowRule> &rules, const TagSet &tags, const QString &title,
                Findings &findings);

} // namespace cnet::gateway
