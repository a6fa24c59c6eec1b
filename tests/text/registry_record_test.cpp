// registry_record_test.cpp
