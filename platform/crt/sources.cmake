# code pages, messages, formatting, character functions
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Characters.cpp
  ${CMAKE_CURRENT_LIST_DIR}/CodePages.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FormatDouble.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FormatHexDouble.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FormatInteger.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FormatPrintf.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FormatText.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PageFacts.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TableAvx2.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TableBuilder.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TablePages.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Utf8.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Utf8Avx2.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Utf8Scalar.cpp)
