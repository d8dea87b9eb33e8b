#include "model/model_side.h"

#include "model/register_name.h"

#include <algorithm>

namespace model {

namespace {

constexpr std::size_t kHostBuffer = 1024;
constexpr std::uint8_t kUntouched = 0xA5;

std::vector<RecipeItem> itemsOf(const Operation &operation)
{
    std::vector<RecipeItem> items;
    for (std::size_t i = 0; i < operation.ranges.size(); ++i) {
        items.push_back({operation.devices[i], {operation.ranges[i], operation.places[i]}});
    }
    return items;
}

} // namespace

void ModelSide::hear()
{
    Notice &heard = m_model.notices.back();
    if (m_looks && registerPlace(heard.name) >= 0) {
        heard.seen = m_model.look({heard.station, heard.name, heard.address, 1});
    }
    if (m_within.empty()) {
        return;
    }
    const Operation operation = m_within.front();
    m_within.pop_front();
    const Observation shown = act(operation, std::string());
    m_model.notices.push_back(noticeWithin(shown));
}

Observation ModelSide::apply(const Operation &operation, const std::string &answer)
{
    m_model.notices.clear();
    Observation shown;
    if (operation.within) {
        m_within.push_back(operation);
    } else {
        shown = act(operation, answer);
    }
    shown.notices = m_model.notices;
    return shown;
}

Observation ModelSide::act(const Operation &operation, const std::string &answer)
{
    Observation shown;
    switch (operation.act) {
    case Act::Start:
        m_model.start({operation.text, operation.missing.empty()});
        break;
    case Act::Listen:
        m_model.listen(operation.value != 0);
        m_looks = operation.value == 2;
        break;
    case Act::Monitor:
        shown.text = textOf(m_model.monitor(operation.ranges), std::string());
        break;
    case Act::Recipe:
        shown.text = textOf(m_model.setRecipe(itemsOf(operation)), std::string());
        break;
    case Act::Buffer:
        m_model.recipeBuffer = recipeBytes(operation.value);
        break;
    case Act::Ask:
        m_model.requests[operation.text == "read" ? 1 : 0] =
            static_cast<unsigned char>(operation.value);
        break;
    case Act::Write:
        m_model.write(operation.ranges.front(), bytesOf(operation.ranges.front(), operation.value),
                      operation.tag);
        break;
    case Act::ReadOnce:
        m_model.readOnce(operation.ranges.front(), operation.value == -1, operation.tag);
        break;
    case Act::Look:
        shown.bytes = m_model.look(operation.ranges.front());
        shown.bytes.resize(kHostBuffer, kUntouched);
        break;
    case Act::Handshake:
        m_model.needHandshake(operation.value != 0);
        break;
    case Act::Send:
        shown.text = send(shown.bytes);
        break;
    case Act::Answer: {
        const Answered answered = m_model.answer(answer);
        shown.text = textOf(answered.code, answered.text);
        break;
    }
    }
    return shown;
}

std::string ModelSide::send(Bytes &values)
{
    const Frame *frame = m_model.send();
    if (frame == nullptr) {
        return textOf(nullptr);
    }
    const SentFrame sent{frame->text, frame->answerSize, frame->dataPlace, frame->units,
                         0,           frame->item.tag,   frame->item.range};
    values = frame->item.values;
    values.resize(std::max(values.size(), kHostBuffer)); // blank behind them
    return textOf(&sent);
}

} // namespace model
