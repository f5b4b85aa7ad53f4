# Files of src/guide
