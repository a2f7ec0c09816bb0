#include "Support/RecordReader.h"

namespace marrowick {

namespace {

/// A list of more texts than this is none: empty ones take many times the room of what they were read from.
constexpr std::size_t mostTexts = 1'000'000;

/// Absent unless the object was a whole node.
std::optional<SnapshotNode> node(Record& record)
{
    if (!record.first || !record.second || !record.nodes)
        return std::nullopt;
    return SnapshotNode { *record.first, *record.second, std::move(*record.nodes) };
}

void dropList(Record& record)
{
    record.texts.reset();
    record.nodes.reset();
}

}

RecordReader::Member RecordReader::memberOf(std::string_view key) const
{
    auto const& shape = *open_.back().shape;
    if (key == shape.firstText)
        return Member::first;
    if (key == shape.secondText)
        return Member::second;
    return key == shape.list ? Member::list : Member::none;
}

bool RecordReader::takesText() const
{
    if (skipped_ > 0 || open_.empty())
        return false;
    auto const& object = open_.back();
    if (object.isInList)
        return object.record.texts.has_value();
    return object.member == Member::first || object.member == Member::second;
}

bool RecordReader::takesNode() const
{
    return !open_.empty() && open_.back().isInList && open_.back().record.nodes.has_value();
}

void RecordReader::takeText(std::string text)
{
    auto& object = open_.back();
    if (object.isInList && object.record.texts->size() >= mostTexts)
        dropList(object.record);
    else if (object.isInList)
        object.record.texts->push_back(std::move(text));
    else if (object.member == Member::first)
        object.record.first = std::move(text);
    else
        object.record.second = std::move(text);
}

bool RecordReader::otherValue()
{
    if (skipped_ > 0 || open_.empty())
        return true;
    auto& object = open_.back();
    // A list with a wrong element is no list of the record.
    switch (object.isInList ? Member::list : object.member) {
    case Member::none:
        break;
    case Member::first:
        object.record.first.reset();
        break;
    case Member::second:
        object.record.second.reset();
        break;
    case Member::list:
        dropList(object.record);
        break;
    }
    return true;
}

bool RecordReader::skipContainer()
{
    otherValue();
    ++skipped_;
    return true;
}

bool RecordReader::on_object_begin(Code&)
{
    bool const isDocument = open_.empty();
    if (skipped_ > 0 || (!isDocument && !takesNode()))
        return skipContainer();
    open_.push_back({ isDocument ? &document_ : &nodeShape, {} });
    return true;
}

bool RecordReader::on_object_end(std::size_t, Code&)
{
    if (skipped_ > 0) {
        --skipped_;
        return true;
    }
    auto record = std::move(open_.back().record);
    open_.pop_back();
    if (open_.empty())
        read_ = std::move(record);
    else if (auto whole = node(record))
        open_.back().record.nodes->push_back(std::move(*whole));
    else
        dropList(open_.back().record);
    return true;
}

bool RecordReader::on_array_begin(Code&)
{
    if (skipped_ > 0 || open_.empty() || open_.back().isInList || open_.back().member != Member::list)
        return skipContainer();
    auto& object = open_.back();
    object.isInList = true;
    if (object.shape->isListOfTexts)
        object.record.texts.emplace();
    else
        object.record.nodes.emplace();
    return true;
}

bool RecordReader::on_array_end(std::size_t, Code&)
{
    if (skipped_ > 0)
        --skipped_;
    else
        open_.back().isInList = false;
    return true;
}

bool RecordReader::on_key_part(Text part, std::size_t, Code&)
{
    if (skipped_ == 0)
        key_.append(part.data(), part.size());
    return true;
}

bool RecordReader::on_key(Text part, std::size_t size, Code& error)
{
    on_key_part(part, size, error);
    if (skipped_ == 0)
        open_.back().member = memberOf(key_);
    key_.clear();
    return true;
}

bool RecordReader::on_string_part(Text part, std::size_t, Code&)
{
    if (takesText())
        text_.append(part.data(), part.size());
    return true;
}

bool RecordReader::on_string(Text part, std::size_t size, Code& error)
{
    on_string_part(part, size, error);
    if (takesText())
        takeText(std::exchange(text_, {}));
    else
        otherValue();
    return true;
}

}
