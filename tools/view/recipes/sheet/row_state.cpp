#include "view/recipes/sheet/row_state.h"

#include <QCoreApplication>

namespace cnet::view {

namespace {

QString withReason(const QString &what, const QString &reason)
{
    return reason.isEmpty() ? what : QString::fromLatin1("%1: %2").arg(what, reason);
}

RowState stateAfterTransfer(const WordOutcome &word, std::optional<quint16> value)
{
    switch (word.fate) {
    case WordFate::Verified:
        return {RowState::Same, Quality::Good,
                QCoreApplication::translate("RecipeRow", "verified")};
    case WordFate::Mismatch:
        return {RowState::Different, Quality::Refused,
                QCoreApplication::translate(
                    "RecipeRow", "mismatch: it was written, and the PLC holds another value")};
    case WordFate::Written:
        return {RowState::Different, Quality::Stale,
                withReason(QCoreApplication::translate("RecipeRow", "written, not read back"),
                           word.reason)};
    case WordFate::Unconfirmed:
        return {RowState::Different, Quality::Refused,
                withReason(QCoreApplication::translate("RecipeRow", "not confirmed"), word.reason)};
    case WordFate::NotSent:
        return {RowState::Different, Quality::Refused,
                withReason(QCoreApplication::translate("RecipeRow", "not sent"), word.reason)};
    case WordFate::NotWritten:
        return {RowState::Different, Quality::Refused,
                withReason(QCoreApplication::translate("RecipeRow", "not written"), word.reason)};
    case WordFate::NotRead:
        return {RowState::Different, Quality::Refused,
                withReason(QCoreApplication::translate("RecipeRow", "not read"), word.reason)};
    case WordFate::Untouched:
    case WordFate::Read:
        break;
    }
    if (!word.plc) {
        return {};
    }
    return word.plc == value ? RowState{RowState::Same, Quality::Good,
                                        QCoreApplication::translate("RecipeRow", "same")}
                             : RowState{RowState::Different, Quality::Stale,
                                        QCoreApplication::translate("RecipeRow", "differs")};
}

} // namespace

RowState rowState(const WordOutcome &word, std::optional<quint16> value)
{
    RowState state = stateAfterTransfer(word, value);
    if (!value) {
        state.text = state.text.isEmpty() || state.kind == RowState::Same
                         ? QCoreApplication::translate("RecipeRow", "no value")
                         : QCoreApplication::translate("RecipeRow", "no value in the recipe; %1")
                               .arg(state.text);
    }
    return state;
}

} // namespace cnet::view
