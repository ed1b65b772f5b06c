// Start-up and shutdown of the process, each in a process of its own.
// What is registered meanwhile is tested with what registers it.
#include <kelm/kelm.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>

namespace kelm::test {
namespace {

constexpr u32 box_type = 200;

framework& fw() { return framework::instance(); }

/// Tells its calls on the error stream, and what stands when they come.
class told_builder : public meta_model_builder {
public:
    std::function<void()> in_attributes;

    void define_data_types() override {
        const value_ptr integer{fw().create_value(data_type::integer)};
        std::cerr << "types:" << (integer != nullptr)
                  << (fw().find_meta_attribute(attribute_id::name) != nullptr)
                  << (types()->find_meta_object(type_id::user_defined_property) != nullptr) << ' ';
    }
    void define_meta_attributes() override {
        std::cerr << "attributes ";
        if (in_attributes) in_attributes();
    }
    void define_meta_objects() override {
        std::cerr << "objects ";
        meta_object* const type = types()->add_meta_object(box_type, "Box", "", "");
        type->add_base_type(types()->find_meta_object(type_id::generic_object));
        type->add_property(property_id::name, "Name", data_type::string, "");
    }

protected:
    static meta_model* types() { return fw().application_meta_model(); }
};

/// Runs in a fresh process, which says what it sees on its error stream.
class start_up : public testing::Test {
protected:
    start_up() : style_(GTEST_FLAG_GET(death_test_style)) { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    ~start_up() override { GTEST_FLAG_SET(death_test_style, style_); }

    /// Ends the process with what `work` has told.
    template <class Work>
    [[noreturn]] static void alone(Work work) {
        work();
        std::cerr << std::endl;
        std::_Exit(0);
    }
    static void start() {
        told_builder builder;
        fw().initialise(builder);
    }
    static object* new_model() { return fw().create_object(type_id::model, nullptr); }

private:
    std::string style_;
};

TEST_F(start_up, the_builder_is_called_once_in_order_when_what_is_built_in_stands) {
    EXPECT_EXIT(alone([] {
                    start();
                    std::cerr << "again ";
                    start();
                    std::cerr << "end";
                }),
                testing::ExitedWithCode(0), "^types:111 attributes objects again end");
}

TEST_F(start_up, before_it_nothing_can_be_made) {
    EXPECT_EXIT(alone([] {
                    std::cerr << fw().models().size() << (new_model() == nullptr)
                              << (fw().instantiate_object(type_id::model, nullptr, true) == nullptr)
                              << fw().models().size() << (fw().xml_handler() == nullptr)
                              << fw().logging_enabled() << fw().in_semantic() << ' '
                              << fw().application_meta_model()->name();
                }),
                testing::ExitedWithCode(0), "^0110100 Application Meta Model");
}

TEST_F(start_up, the_four_built_in_types_stand_behind_it) {
    EXPECT_EXIT(alone([] {
                    start();
                    for (const u32 id : {1u, 2u, 3u, 49999u})
                        std::cerr << fw().application_meta_model()->find_meta_object(id)->name() << ',';
                }),
                testing::ExitedWithCode(0), "Model,Library,Generic Object,User Defined Property,");
}

TEST_F(start_up, a_builder_that_starts_up_again_is_not_called_again) {
    EXPECT_EXIT(alone([] {
                    told_builder builder;
                    builder.in_attributes = [&] { fw().initialise(builder); };
                    fw().initialise(builder);
                    std::cerr << "end";
                }),
                testing::ExitedWithCode(0), "^types:111 attributes objects end");
}

TEST_F(start_up, a_builder_that_throws_may_be_tried_again) {
    EXPECT_EXIT(alone([] {
                    told_builder builder;
                    builder.in_attributes = [] { throw std::runtime_error("no"); };
                    try {
                        fw().initialise(builder);
                    } catch (const std::runtime_error& e) {
                        std::cerr << e.what() << ' ';
                    }
                    const std::size_t before = fw().application_meta_model()->meta_objects().size();
                    start();
                    std::cerr << fw().application_meta_model()->meta_objects().size() - before << " new";
                }),
                testing::ExitedWithCode(0), "^types:111 attributes no types:111 attributes objects 1 new");
}

TEST_F(start_up, a_row_of_an_attribute_that_is_replaced_stays_readable) {
    EXPECT_EXIT(alone([] {
                    fw().add_meta_attribute(900, "Nine Hundred", true);
                    const meta_attribute* const former = fw().find_meta_attribute(900);
                    const property<std::string> standard{"standard"};
                    fw().add_meta_attribute_with_default(900, "Another", standard, false);
                    std::cerr << former->name() << ',' << fw().find_meta_attribute(900)->name() << ','
                              << (former != fw().find_meta_attribute(900))
                              << (fw().find_meta_attribute(901) != nullptr) << ' ';
                    fw().add_meta_attribute(7, "Seven", true);
                    std::vector<u32> ids{5};
                    fw().meta_attribute_ids(ids);
                    for (const u32 id : ids) std::cerr << id << ' ';
                }),
                testing::ExitedWithCode(0), "^Nine Hundred,Another,10 5 7 900 ");
}

class counted_handler final : public qdxml {
public:
    counted_handler(int& alive, int generation) : alive_(alive), generation_(generation) { ++alive_; }
    ~counted_handler() override { --alive_; }
    qdxml* clone() const override { return new counted_handler(alive_, generation_ + 1); }
    bool needs_xml_processing(u32) const override { return false; }
    int generation() const { return generation_; }

private:
    int& alive_;
    int generation_;
};

TEST_F(start_up, the_framework_keeps_one_clone_of_the_xml_handler) {
    EXPECT_EXIT(alone([] {
                    int alive = 0;
                    {
                        const counted_handler handler{alive, 0};
                        fw().set_xml_handler(handler);
                        std::cerr << alive;
                        fw().set_xml_handler(handler);
                        std::cerr << alive;
                    }
                    std::cerr << alive;
                    fw().set_xml_handler(*fw().xml_handler()); // its own
                    std::cerr << alive << " clone "
                              << static_cast<counted_handler*>(fw().xml_handler())->generation();
                }),
                testing::ExitedWithCode(0), "^2211 clone 2");
}

/// Says that it hears a model close, and how many models are then open.
class farewell final : public observer_impl {
public:
    bool update(subject* from, message* what) override {
        std::cerr << what->type() << '/' << fw().models().size() << ' ';
        from->detach(this);
        return true;
    }
};

TEST_F(start_up, shutdown_closes_every_model_and_clears_the_types) {
    EXPECT_EXIT(alone([] {
                    start();
                    farewell ear;
                    for (int i = 0; i != 3; ++i) {
                        object* const root = new_model();
                        fw().create_object(box_type, root);
                        root->attach(&ear);
                    }
                    std::cerr << "shut ";
                    fw().shutdown();
                    std::cerr << "models " << fw().models().size() << " types "
                              << fw().application_meta_model()->meta_objects().size() << " made "
                              << (new_model() != nullptr);
                }),
                testing::ExitedWithCode(0), "shut 0/2 0/1 0/0 models 0 types 0 made 0");
}

TEST_F(start_up, behind_shutdown_the_process_does_not_start_again) {
    EXPECT_EXIT(alone([] {
                    start();
                    fw().shutdown();
                    std::cerr << "shut ";
                    start();
                    std::cerr << "made " << (new_model() != nullptr);
                    fw().shutdown();
                }),
                testing::ExitedWithCode(0), "objects shut made 0");
}

class stubborn final : public obj_pre_delete_semantic {
public:
    u32 id() const override { return 1; }
    bool do_it(object*) override {
        std::cerr << "no ";
        return false;
    }
};

TEST_F(start_up, a_model_that_never_agrees_is_closed_all_the_same) {
    EXPECT_EXIT(alone([] {
                    start();
                    meta_object* const model =
                        fw().application_meta_model()->find_meta_object(type_id::model);
                    model->add_semantic(new stubborn);
                    object* const root = new_model();
                    farewell ear;
                    root->attach(&ear);
                    new_model();
                    std::cerr << fw().delete_object(root) << fw().models().size() << " shut ";
                    fw().shutdown();
                    std::cerr << "models " << fw().models().size();
                }),
                testing::ExitedWithCode(0), "no 02 shut no 0/1 no models 0");
}

class unborn final : public obj_create_semantic {
public:
    u32 id() const override { return 1; }
    bool do_it(object*) override { return false; }
};

TEST_F(start_up, a_model_whose_making_was_refused_goes_with_shutdown) {
    EXPECT_EXIT(alone([] {
                    start();
                    fw().application_meta_model()->find_meta_object(type_id::model)->add_semantic(new unborn);
                    std::cerr << (new_model() == nullptr) << " left " << fw().models().size() << " state "
                              << fw().models().front()->as_object()->state();
                    fw().shutdown();
                    std::cerr << " models " << fw().models().size();
                }),
                testing::ExitedWithCode(0), "1 left 1 state 1 models 0");
}

} // namespace
} // namespace kelm::test
