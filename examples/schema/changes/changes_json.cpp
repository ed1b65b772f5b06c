// One list a fate, each in the order of the text; texts as they are.
// What there is not is null, or an empty list.
#include "changes/changes_json.h"

#include "printing/json_writer.h"

namespace schema {

namespace {

void text_or_null(json_writer& json, const char* key, const std::optional<std::string>& text) {
    json.key(key);
    if (text)
        json.value(*text);
    else
        json.null();
}

std::optional<std::string> if_any(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

void list(json_writer& json, const char* key, const std::vector<std::string>& texts) {
    json.key(key).begin_array();
    for (const std::string& text : texts) json.value(text);
    json.end_array();
}

void write_identity(json_writer& json, const changed_thing& thing) {
    json.key("type").value(thing.type_name);
    text_or_null(json, "name", if_any(thing.name));
    text_or_null(json, "table", if_any(thing.where));
    json.key("id").value(static_cast<std::size_t>(thing.id));
}

/// Values of what is new or gone, and what came or went with it.
void write_whole(json_writer& json, const changed_thing& thing) {
    json.begin_object();
    write_identity(json, thing);
    json.key("values").begin_object();
    for (const value_change& value : thing.values)
        text_or_null(json, value.name.c_str(), thing.what == fate::dropped ? value.before : value.after);
    json.end_object();
    json.key("parts").begin_array();
    for (const changed_thing& part : thing.parts) write_whole(json, part);
    json.end_array();
    json.end_object();
}

void write_value(json_writer& json, const value_change& value) {
    json.begin_object();
    json.key("property").value(value.name);
    text_or_null(json, "before", value.before);
    text_or_null(json, "after", value.after);
    text_or_null(json, "inherited_from", if_any(value.inherited_from));
    json.key("by_default").value(value.by_default);
    json.end_object();
}

void write_move(json_writer& json, const std::optional<place_change>& moved) {
    json.key("moved");
    if (!moved) return json.null();
    json.begin_object();
    json.key("from").value(moved->from);
    json.key("to").value(moved->to);
    json.end_object();
}

void write_difference(json_writer& json, const changed_thing& thing) {
    json.begin_object();
    write_identity(json, thing);
    text_or_null(json, "renamed_from", if_any(thing.renamed_from));
    text_or_null(json, "moved_from_table", if_any(thing.moved_from));
    write_move(json, thing.moved);
    list(json, "new_domains", thing.new_bases);
    list(json, "lost_domains", thing.lost_bases);
    json.key("values").begin_array();
    for (const value_change& value : thing.values) write_value(json, value);
    json.end_array();
    json.end_object();
}

void write_all(json_writer& json, const char* key, fate of, const std::vector<change_group>& changes) {
    json.key(key).begin_array();
    for (const change_group& group : changes)
        for (const changed_thing& thing : group)
            if (thing.what == of) (of == fate::changed ? write_difference : write_whole)(json, thing);
    json.end_array();
}

} // namespace

void print_changes_as_json(std::ostream& out, const edit_range& by,
                           const std::vector<change_group>& changes) {
    json_writer json(out);
    json.begin_object();
    json.key("file").value(by.file);
    json.key("first").value(by.first);
    json.key("last").value(by.last);
    write_all(json, "created", fate::created, changes);
    write_all(json, "dropped", fate::dropped, changes);
    write_all(json, "changed", fate::changed, changes);
    json.end_object();
}

} // namespace schema
