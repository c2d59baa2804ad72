# Kinds of picture files. Those over third-party libraries are built where these are at hand.
target_sources(imagxpr5 PRIVATE ${CMAKE_CURRENT_LIST_DIR}/Bmp.cpp ${CMAKE_CURRENT_LIST_DIR}/BmpRuns.cpp ${CMAKE_CURRENT_LIST_DIR}/OwnCodecs.cpp)
