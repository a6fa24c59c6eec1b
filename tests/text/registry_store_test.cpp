// registry_store_test.cpp
