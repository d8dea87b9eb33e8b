#include "view/values/list/tag_entry.h"

#include "view/look/colours.h"

#include "host/tag/typed_item.h"
#include "host/tagfile/tag_columns.h"

#include <QCompleter>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringListModel>

#include <algorithm>

namespace cnet::view {

TagEntry::TagEntry(WatchedTags &tags, QWidget *parent)
    : QWidget(parent)
    , m_tags(tags)
    , m_field(new QLineEdit)
    , m_add(new QPushButton(tr("Add")))
    , m_error(new QLabel)
    , m_words(new QStringListModel(this))
{
    auto *const label = new QLabel(tr("A&dd:"));
    label->setBuddy(m_field);
    m_field->setAccessibleName(tr("Item or name of a tag to add"));
    m_field->setPlaceholderText(tr("D_W:112@u16*0.1-40, or oil.level=D_W:100"));
    m_field->setToolTip(tr("An address with its type and scale, a name in front where you like, "
                           "or the name of a tag"));
    m_field->setClearButtonEnabled(true);
    m_error->setTextFormat(Qt::PlainText);
    m_error->setWordWrap(true);
    m_error->hide();
    auto *const completer = new QCompleter(m_words, this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    m_field->setCompleter(completer);
    auto *const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(label, 0, 0);
    grid->addWidget(m_field, 0, 1);
    grid->addWidget(m_add, 0, 2);
    grid->addWidget(m_error, 1, 1, 1, 2);
    grid->setColumnStretch(1, 1);
    connect(m_field, &QLineEdit::textChanged, this, &TagEntry::review);
    connect(m_field, &QLineEdit::returnPressed, this, &TagEntry::enter);
    connect(m_add, &QPushButton::clicked, this, &TagEntry::enter);
    connect(&tags, &WatchedTags::tagsChanged, this, [this] {
        listWords();
        review();
    });
    listWords();
    review();
}

void TagEntry::setKnown(const TagSet &known)
{
    m_known = known;
    listWords();
    review();
}

QString TagEntry::error() const
{
    return m_error->text();
}

void TagEntry::listWords()
{
    QStringList words;
    const QStringList registers = m_tags.line().registers().names();
    for (const QString &name : registers) {
        words.append(name + QLatin1Char(':'));
    }
    for (const TagSet &set : {m_tags.tags(), m_known}) {
        for (const Tag &tag : set.all()) {
            words.append(tagText(tag));
        }
    }
    words.removeDuplicates();
    m_words->setStringList(words);
}

// Nobody is told off for what is only begun.
bool TagEntry::isBegin(const QString &text) const
{
    const QStringList words = m_words->stringList();
    return std::any_of(words.cbegin(), words.cend(), [&](const QString &word) {
        return word.startsWith(text, Qt::CaseInsensitive);
    });
}

std::optional<Tag> TagEntry::readItem(const QString &text, QString &error) const
{
    const int equals = static_cast<int>(text.indexOf(QLatin1Char('=')));
    if (equals < 0) {
        auto tag = m_tags.parse(text, error);
        if (!tag && !text.contains(QLatin1Char('@'))) {
            error += tr("; type, scale and offset follow behind @: D_W:112@u16*0.1-40");
        }
        return tag;
    }
    const QString name = text.left(equals).trimmed();
    if (!isTagName(name)) {
        error = tr("'%1' is no name: letters, digits and . _ - / are, with a letter or _ in front, "
                   "for example oil.level=D_W:100@u16")
                    .arg(name);
        return std::nullopt;
    }
    auto tag = m_tags.parse(text.mid(equals + 1).trimmed(), error);
    if (tag) {
        tag->name = name;
    }
    return tag;
}

TagEntry::Reading TagEntry::read(const QString &text) const
{
    Reading reading;
    if (m_tags.tags().find(text) != nullptr) {
        reading.found = text;
        return reading;
    }
    if (const Tag *const known = m_known.find(text); known != nullptr) {
        reading.tag = *known;
        return reading;
    }
    reading.tag = readItem(text, reading.error);
    if (reading.tag && m_tags.tags().find(tagText(*reading.tag)) != nullptr) {
        const bool hasOtherPlace = !reading.tag->name.isEmpty();
        reading.found = hasOtherPlace ? QString() : tagText(*reading.tag);
        reading.error = hasOtherPlace
                            ? tr("%1 is the name of another tag already").arg(reading.tag->name)
                            : QString();
        reading.tag.reset();
    }
    return reading;
}

void TagEntry::review()
{
    const QString text = m_field->text().trimmed();
    QString error;
    bool isGood = false;
    if (!text.isEmpty()) {
        const Reading reading = read(text);
        isGood = reading.tag.has_value() || !reading.found.isEmpty();
        error = isGood || isBegin(text) ? QString() : reading.error;
    }
    m_add->setEnabled(isGood);
    QPalette own = palette();
    if (!error.isEmpty()) {
        own.setColor(QPalette::Base, washColour(Tone::Bad, own));
    }
    m_field->setPalette(own);
    own.setColor(QPalette::WindowText, toneColour(Tone::Bad, palette()));
    m_error->setPalette(own);
    m_error->setText(error);
    m_error->setVisible(!error.isEmpty());
    m_field->setAccessibleDescription(error);
}

void TagEntry::enter()
{
    const QString text = m_field->text().trimmed();
    if (text.isEmpty()) {
        return;
    }
    const Reading reading = read(text);
    if (reading.tag) {
        m_field->clear();
        Q_EMIT entered(*reading.tag);
    } else if (!reading.found.isEmpty()) {
        m_field->clear();
        Q_EMIT lookedFor(reading.found);
    } else {
        // Enter is the end of beginning.
        m_error->setText(reading.error);
        m_error->show();
    }
}

} // namespace cnet::view
