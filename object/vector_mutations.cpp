// Changing elements of own vector values: what is special about each on the road of every change.
// Vectors are changed in place; a vector that is inherited is never touched.
#include "message/vector_messages.h"
#include "object/mutation.h"

namespace kelm {

namespace {

const vector_property* own_vector_of(const object_impl& at, u32 id) {
    return exact_cast<vector_property>(at.values().find(id));
}

struct insert_element_row : property_row {
    const abstract_property& element;
    std::size_t position;
    std::unique_ptr<abstract_property> made{}; // until the object takes it over

    bool pre(object_impl& at) {
        return at.run<pre_prop_insert_vecprop_semantic>(
            [&](pre_prop_insert_vecprop_semantic& h) { return h.do_it(&at, id, element, position, &self); });
    }

    step test() {
        made = clone(&element); // first: code of an application's kind of value may take the list away
        return own_vector_of(self, id) ? step::go_on : step::refuse;
    }

    std::unique_ptr<message_impl> message() {
        // Kept: a position behind the end puts nothing in, and the operation is told and recorded all the same.
        if (position > own_vector_of(self, id)->elements.size())
            return std::make_unique<property_insert_vec_prop_message_impl>(&self, std::move(made), id,
                                                                           position);
        return std::make_unique<property_insert_vec_prop_message_impl>(&self, made.get(), id, position);
    }

    void change(message_impl&) {
        if (made) self.insert_element(id, position, made);
    }

    bool post(object_impl& at) {
        return at.run<post_prop_insert_vecprop_semantic>(
            [&](post_prop_insert_vecprop_semantic& h) { return h.do_it(&at, id, element, position, &self); });
    }
};

struct delete_element_row : property_row {
    std::size_t position;
    const abstract_property* old = nullptr; // the message has it

    bool pre(object_impl& at) {
        return at.run<pre_prop_delete_vecprop_semantic>(
            [&](pre_prop_delete_vecprop_semantic& h) { return h.do_it(&at, id, position, &self); });
    }

    step test() {
        const vector_property* const list = own_vector_of(self, id);
        if (!list || position >= list->elements.size()) return step::refuse;
        old = list->elements[position];
        return step::go_on;
    }

    std::unique_ptr<message_impl> message() {
        return std::make_unique<property_delete_vec_prop_message_impl>(&self, nullptr, id, position);
    }

    void change(message_impl& said) { said.custody(0)->take_back(self.take_element(id, position, nullptr)); }

    bool post(object_impl& at) {
        return at.run_with_clone<post_prop_delete_vecprop_semantic>(
            old, [&](post_prop_delete_vecprop_semantic& h, const value_ptr& copy) {
                return h.do_it(&at, id, position, copy, &self);
            });
    }
};

struct set_element_row : property_row {
    const abstract_property& element;
    std::size_t position;
    std::unique_ptr<abstract_property> made{}; // until the object takes it over
    const abstract_property* old = nullptr;    // the message has it

    bool pre(object_impl& at) {
        return at.run<pre_prop_set_vecprop_semantic>(
            [&](pre_prop_set_vecprop_semantic& h) { return h.do_it(&at, id, element, position, &self); });
    }

    step test() {
        made = clone(&element); // first: code of an application's kind of value may take the list away
        const vector_property* const list = own_vector_of(self, id);
        if (!list || position >= list->elements.size()) return step::refuse;
        old = list->elements[position];
        return step::go_on;
    }

    std::unique_ptr<message_impl> message() {
        return std::make_unique<property_set_vec_prop_message_impl>(
            &self, std::unique_ptr<abstract_property>{}, made.get(), id, position);
    }

    void change(message_impl& said) {
        self.exchange_element(id, position, made);
        said.custody(1)->take_back(std::move(made));
    }

    bool post(object_impl& at) {
        return at.run_with_clone<post_prop_set_vecprop_semantic>(
            old, [&](post_prop_set_vecprop_semantic& h, const value_ptr& copy) {
                return h.do_it(&at, id, element, position, copy, &self);
            });
    }
};

struct move_element_row : property_row {
    std::size_t from;
    std::size_t to;
    bool moves = false;

    bool pre(object_impl& at) {
        return at.run<pre_prop_change_vecprop_elem_order_semantic>(
            [&](pre_prop_change_vecprop_elem_order_semantic& h) {
                return h.do_it(&at, id, from, to, &self);
            });
    }

    step test() {
        const vector_property* const list = own_vector_of(self, id);
        if (!list) return step::refuse;
        moves = from < list->elements.size();
        if (moves && to >= list->elements.size()) return lose(list->elements[from]);
        return step::go_on; // also with nothing to move: told as done
    }

    std::unique_ptr<message_impl> message() {
        return std::make_unique<element_position_vec_prop_message_impl>(&self, id, from, to, moves);
    }

    void change(message_impl&) {
        if (moves) self.move_element(id, from, to);
    }

    bool post(object_impl& at) {
        return at.run<post_prop_change_vecprop_elem_order_semantic>(
            [&](post_prop_change_vecprop_elem_order_semantic& h) {
                return h.do_it(&at, id, from, to, &self);
            });
    }

private:
    /// Kept: an element that would go behind the end is out of the list although the move is refused, and no message
    /// has it; the model frees it at its end.  The rollback comes first: it needs the list as its messages left it.
    step lose(const abstract_property* element) {
        self.refuse();
        self.keep_lost_value(self.take_element(id, from, element));
        return step::failed;
    }
};

} // namespace

bool object_impl::insert_vector_element(u32 id, const abstract_property& element, std::size_t position) {
    return mutate(insert_element_row{{*this, id}, element, position});
}

bool object_impl::append_vector_element(u32 id, const abstract_property& element) {
    take_back_interrupted(*this);
    if (!defines_property(id)) {
        bool& mark = process().in_semantic;
        const bool before = mark;
        mark = true;
        const bool passed = set_property(id, vector_property{});
        mark = before; // also behind a refusal: what the user does next is the user's own
        if (!passed) return false;
    }
    const vector_property* const list = own_vector(id);
    if (!list && !is_deleted()) return refuse();
    return insert_vector_element(id, element, list ? list->elements.size() : 0);
}

bool object_impl::delete_vector_element(u32 id, std::size_t position) {
    take_back_interrupted(*this);
    if (!own_vector(id)) return refuse(); // before any hook
    return mutate(delete_element_row{{*this, id}, position});
}

bool object_impl::set_vector_element(u32 id, const abstract_property& element, std::size_t position) {
    return mutate(set_element_row{{*this, id}, element, position});
}

bool object_impl::move_vector_element(u32 id, std::size_t from, std::size_t to) {
    return mutate(move_element_row{{*this, id}, from, to});
}

} // namespace kelm
