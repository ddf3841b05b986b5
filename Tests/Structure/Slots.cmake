# The dump of class layouts is g++'s own.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    return()
endif()

set(compile ${CMAKE_CXX_COMPILER} -std=c++20)
set(includes ${platform})
list(TRANSFORM includes REPLACE "(.+)" "-I${PROJECT_SOURCE_DIR}/Platform/\\1")

structure_test(Virtual_operations_stand_in_the_order_told CheckSlots
    ${CMAKE_CURRENT_SOURCE_DIR}/slots.txt ${CMAKE_CURRENT_SOURCE_DIR}/Slots.cpp
    ${compile} ${includes} -I${PROJECT_SOURCE_DIR}/Libs/MuTlkHelper)

set(slot_twin CheckSlots ${twins}/slots.txt ${twins}/Slots.cpp ${compile})
structure_test(Slots_of_the_twin_stand_in_order ${slot_twin})
structure_twin(Swapped_slots_are_reported
    REPORTS "Twin::Shape: table 0, slot 0: expected Twin::Shape::Start, found Twin::Shape::Stop"
    COMMAND ${slot_twin} -DSWAPPED_SLOTS)
structure_twin(An_extra_slot_is_reported
    REPORTS "Twin::Shape: table 0, slot 5: expected nothing, found Twin::Shape::Length"
    COMMAND ${slot_twin} -DEXTRA_SLOT)
structure_twin(A_slot_that_is_not_overridden_is_reported
    REPORTS "Twin::Shape: table 0, slot 1: expected Twin::Shape::Stop, found pure"
    COMMAND ${slot_twin} -DMISSING_BODY)
structure_twin(Swapped_slots_of_a_second_table_are_reported
    REPORTS "Twin::Crate: table 1, slot 0: expected Twin::Crate::Width, found Twin::Crate::Height"
    COMMAND ${slot_twin} -DSWAPPED_SECOND_TABLE)
