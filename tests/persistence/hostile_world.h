// A small model with something of everything, and the use of whatever was made of its stream.
// What is wrong with a stream is told by the tests.
#pragma once

#include "tests/persistence/stream_world.h"
#include "tests/support/consistency.h"
#include "tests/support/counted_value.h"

#include <memory>
#include <set>
#include <string>

namespace kelm::test {

class hostile_world : public stream_world {
protected:
    /// The stream of a few objects with values, bases, observers, marks, a definition, and a history that has messages
    /// of every kind that is stored.
    std::string rich_stream() {
        object* const c = thing("c");
        object* const d = part("d", c);
        object* const e = part("e", c);
        object* const f = thing("f");
        const property<int> two{2};
        change([&] {
            vector_property list;
            for (const int each : {1, 2}) list.elements.push_back(new property<int>{each});
            c->set_property(props::list, list);
            c->set_property(props::reference, reference(d));
        });
        change([&] { c->set_vector_element(props::list, number(9), 1); });
        change([&] { c->insert_vector_element(props::list, number(8), 0); });
        change([&] { c->delete_vector_element(props::list, 1); });
        change([&] { d->add_inherits_from(c); });
        change([&] { c->set_property_not_inheritable(props::text, true); });
        change([&] { c->attach(dynamic_cast<observer*>(d)); });
        change([&] { model->add_user_defined_property(types::thing, "own", 6, "", 0); });
        change([&] { fw.delete_object(part("gone", c)); });
        change([&] { c->set_property(props::number, number(1)); });
        change([&] { c->set_property(props::number, number(2)); });
        change([&] { // what the lines above have not done
            c->move_vector_element(props::list, 0, 1);
            c->delete_property(props::number);
            c->refresh_property(props::real, &two, &two);
            c->refresh_property(props::real, nullptr, &two);
            c->set_child_position(e, 0);
            e->set_owner(d);
            d->insert_inherits_from(e, 0);
            d->set_inherits_from_position(e, 1);
            d->replace_inherits_from(f, c);
            d->cancel_inherits_from(e);
            c->detach_object(d);
            meta_object* const type = model->meta_model()->find_meta_object(types::thing);
            meta_property* const own = type->find_property("own");
            model->set_user_defined_property_attribute(type, own, attribute_id::default_value, text("x"));
            model->remove_user_defined_property(types::thing, own->id());
        });
        std::set<u32> missing;
        for (u32 kind = message_type::tran_begin; kind <= message_type::udp_set_attribute_value; ++kind)
            if (kind != message_type::tran_rollback) missing.insert(kind);
        for (std::size_t i = 0; i != model->message_count(); ++i) missing.erase(model->message_at(i)->type());
        EXPECT_EQ(missing, std::set<u32>{});
        return saved(true);
    }

    /// Does with the copy what an application could do, and looks whether it is sound.
    void use() {
        expect_sound();
        for (std::size_t left = copy->message_count(); left != 0 && copy->in_transaction(); --left)
            copy->end_transaction();
        for (std::size_t left = copy->message_count() + 1; copy->can_undo(); --left) {
            ASSERT_NE(left, 0U) << "undo does not end";
            copy->undo();
        }
        expect_sound();
        for (std::size_t left = copy->message_count() + 1000; copy->can_redo(); --left) {
            ASSERT_NE(left, 0U) << "redo does not end";
            copy->redo();
        }
        expect_sound();
    }

private:
    template <class Change>
    void change(Change&& what) {
        begin();
        what();
        end();
    }
    void expect_sound() {
        EXPECT_EQ(broken_links_of_hostile(*copy), "");
        std::string words;
        for (std::size_t i = 0; i != copy->message_count(); ++i) copy->message_at(i)->to_string(words);
    }
};

} // namespace kelm::test
