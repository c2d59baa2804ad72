# Effects that are built everywhere, and those that stand in where OpenCV is not at hand.
target_sources(imagxpr5 PRIVATE ${CMAKE_CURRENT_LIST_DIR}/Unavailable.cpp)
